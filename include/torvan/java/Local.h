// References that belong to one thread.
#pragma once

#include <torvan/java/Ref.h>

#include <utility>

namespace torvan::java {

namespace detail {

template <typename T>
Local<T> Own(JNIEnv* env, jobject local) noexcept;

// A new local reference to the object of any reference. Throws std::bad_alloc and Error.
jobject NewLocal(JNIEnv* env, jobject ref);

}  // namespace detail

// A local reference of the thread that made it, deleted at the end of its scope.
// It can be moved but not copied. Use it in its own thread; make a Global<T> of it for another one, or to keep it. In
// another thread, after its thread was detached or after the end of the VM, dropping it does nothing.
template <typename T = Object>
class Local {
 public:
  Local() noexcept = default;
  Local(std::nullptr_t) noexcept {}

  // Makes a new reference to the same object, from a Global, a handle or whatever a Ref<T> is made from.
  // The class of a handle's object is tested here, and not again at each call. Throws as Ref<T> and a call do: what is
  // pending first.
  explicit Local(const Ref<T>& other) {
    if (!other) return;
    JNIEnv* const env = detail::CallEnv();
    m_attachment = detail::Attachment(env);
    m_ref = detail::NewLocal(env, other.Get());
  }

  Local(Local&& other) noexcept : m_attachment(other.m_attachment), m_ref(std::exchange(other.m_ref, nullptr)) {}
  template <typename U>
  Local(Local<U>&& other) noexcept : m_attachment(other.m_attachment), m_ref(std::exchange(other.m_ref, nullptr)) {
    detail::RequireIsA<U, T>();
  }
  Local& operator=(Local&& other) noexcept {
    Local taken(std::move(other));
    std::swap(m_attachment, taken.m_attachment);
    std::swap(m_ref, taken.m_ref);
    return *this;
  }
  ~Local() { Reset(); }

  // The raw local reference, owned by this object; null for a null reference.
  jobject Get() const noexcept TORVAN_JAVA_LENT { return m_ref; }
  explicit operator bool() const noexcept { return m_ref != nullptr; }

  // Drops the reference: this object is null afterwards.
  void Reset() noexcept {
    if (m_ref != nullptr && m_attachment.IsHere()) m_attachment.Env()->DeleteLocalRef(m_ref);
    m_ref = nullptr;
  }

  // Releases the raw reference: the caller owns it, and this object is null afterwards.
  jobject Release() noexcept { return std::exchange(m_ref, nullptr); }

 private:
  template <typename U>
  friend class Local;
  friend Local detail::Own<T>(JNIEnv* env, jobject local) noexcept;

  Local(JNIEnv* env, jobject local) noexcept : m_attachment(env), m_ref(local) {}

  detail::Attachment m_attachment;
  jobject m_ref = nullptr;
};

namespace detail {

// Takes ownership of a raw local reference of the environment's thread without testing its class.
template <typename T>
Local<T> Own(JNIEnv* env, jobject local) noexcept {
  return Local<T>(env, local);
}

}  // namespace detail

}  // namespace torvan::java
