// References that do not keep their object alive.
#pragma once

#include <torvan/java/Global.h>
#include <torvan/java/Local.h>

namespace torvan::java {

// A weak global reference: it does not keep its object from being collected.
// Copies share it. Copying and dropping follow the rules of Global.
template <typename T = Object>
class Weak {
 public:
  Weak() noexcept = default;
  Weak(std::nullptr_t) noexcept {}

  // Makes a weak reference of whatever a Ref<T> is made from. Throws as Global<T> does.
  explicit Weak(const Ref<T>& other) {
    if (other) m_share = detail::Share(detail::MakeShared(detail::CallEnv(), other.Get(), true));
  }

  // Returns a reference to the object, or null when it was collected. Throws as a call does, what is pending
  // first.
  Local<T> Lock() const {
    if (m_share.Get() == nullptr) return nullptr;
    JNIEnv* const env = detail::CallEnv();
    return detail::Own<T>(env, env->NewLocalRef(m_share.Get()));  // null for a collected object
  }

  // Drops this share: Lock() returns null afterwards.
  void Reset() noexcept { m_share = detail::Share(); }

 private:
  detail::Share m_share;
};

}  // namespace torvan::java
