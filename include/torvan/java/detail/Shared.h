// Global references that are shared and counted.
#pragma once

#include <torvan/java/detail/Environment.h>

#include <atomic>
#include <utility>

namespace torvan::java::detail {

// A global or weak global reference with its count; also a link of the list of references to be deleted later.
struct SharedRef {
  jobject ref;
  bool isWeak;
  std::atomic<int> count;
  SharedRef* next;
};

// Makes a shared reference of any reference that is not null, counted once.
// Throws Error when the VM has no memory for it, and std::bad_alloc.
SharedRef* MakeShared(JNIEnv* env, jobject ref, bool isWeak);

// Deletes a reference whose count is zero. On a thread that is not attached it is deleted later: this never fails,
// waits or attaches. After the end of the VM its memory alone is freed.
void DropShared(SharedRef* shared) noexcept;

// Throws what is pending after the VM has refused a global reference, else std::bad_alloc.
[[noreturn]] void ThrowOutOfReferences(JNIEnv* env);

// Deletes what threads that were not attached have dropped.
void DeleteDropped(JNIEnv* env) noexcept;

// A share of a reference, or nothing.
class Share {
 public:
  Share() noexcept = default;
  explicit Share(SharedRef* shared) noexcept : m_shared(shared) {}
  Share(const Share& other) noexcept : m_shared(other.m_shared) {
    if (m_shared != nullptr) m_shared->count.fetch_add(1, std::memory_order_relaxed);
  }
  Share(Share&& other) noexcept : m_shared(std::exchange(other.m_shared, nullptr)) {}
  Share& operator=(Share other) noexcept {
    std::swap(m_shared, other.m_shared);
    return *this;
  }
  ~Share() {
    if (m_shared != nullptr && m_shared->count.fetch_sub(1, std::memory_order_acq_rel) == 1) DropShared(m_shared);
  }

  jobject Get() const noexcept { return m_shared != nullptr ? m_shared->ref : nullptr; }

 private:
  SharedRef* m_shared = nullptr;
};

}  // namespace torvan::java::detail
