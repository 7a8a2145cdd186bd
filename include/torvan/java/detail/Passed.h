// Arguments on their way to Java.
#pragma once

#include <torvan/jni/JniTypes.h>

#include <utility>

namespace torvan::java::detail {

// A reference that goes to Java: one of the caller's, or a local one that was made for the call and ends with it.
class Passed {
 public:
  Passed() noexcept = default;
  explicit Passed(jobject borrowed) noexcept : m_ref(borrowed) {}
  Passed(JNIEnv* env, jobject made) noexcept : m_ref(made), m_owner(env) {}
  Passed(Passed&& other) noexcept : m_ref(other.m_ref), m_owner(std::exchange(other.m_owner, nullptr)) {}
  Passed& operator=(Passed&&) = delete;
  ~Passed() {
    if (m_owner != nullptr && m_ref != nullptr) m_owner->DeleteLocalRef(m_ref);
  }

  jobject Get() const noexcept { return m_ref; }

  // Leaves the reference to the caller.
  void Release() noexcept { m_owner = nullptr; }

 private:
  jobject m_ref = nullptr;
  JNIEnv* m_owner = nullptr;
};

inline jvalue ValueOf(jvalue value) noexcept { return value; }
template <typename Holder>
jvalue ValueOf(const Holder& holder) noexcept {
  jvalue value{};
  value.l = holder.Get();
  return value;
}

}  // namespace torvan::java::detail
