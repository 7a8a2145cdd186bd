// References that belong to no thread.
#pragma once

#include <torvan/java/Ref.h>
#include <torvan/java/detail/Shared.h>

namespace torvan::java {

namespace detail {

template <typename T>
Global<T> GlobalOf(JNIEnv* env, jobject ref);

}  // namespace detail

// A global reference, shared by its copies and deleted with the last of them.
// Copying and dropping throw nothing, need no environment and may be done on any thread at any time, also by several at
// once, while an exception is thrown, in static destructors and after the end of the VM. Copy it for each thread: as
// with any C++ object, one thread must not write it while another uses it.
template <typename T = Object>
class Global {
 public:
  Global() noexcept = default;
  Global(std::nullptr_t) noexcept {}

  // Makes a global reference from a Local, a handle or whatever a Ref<T> is made from.
  // Throws as Ref<T> and a call do, what is pending first; Error when Java's memory is full, and std::bad_alloc.
  explicit Global(const Ref<T>& other) {
    if (other) m_share = detail::Share(detail::MakeShared(detail::CallEnv(), other.Get(), false));
  }

  template <typename U>
  Global(const Global<U>& other) noexcept : m_share(other.m_share) {
    detail::RequireIsA<U, T>();
  }
  template <typename U>
  Global(Global<U>&& other) noexcept : m_share(std::move(other.m_share)) {
    detail::RequireIsA<U, T>();
  }

  // The raw global reference, alive as long as this object or a copy of it; null for a null reference.
  jobject Get() const noexcept TORVAN_JAVA_LENT { return m_share.Get(); }
  explicit operator bool() const noexcept { return Get() != nullptr; }

  // Drops this share: this object is null afterwards.
  void Reset() noexcept { m_share = detail::Share(); }

 private:
  template <typename U>
  friend class Global;
  friend Global detail::GlobalOf<T>(JNIEnv* env, jobject ref);
  template <typename To, typename From>
  friend Global<To> Cast(const Global<From>& ref);

  explicit Global(detail::Share share) noexcept : m_share(std::move(share)) {}

  detail::Share m_share;
};

namespace detail {

// Makes a global reference from any raw reference without testing its class; null stays null.
template <typename T>
Global<T> GlobalOf(JNIEnv* env, jobject ref) {
  return Global<T>(ref != nullptr ? Share(MakeShared(env, ref, false)) : Share());
}

}  // namespace detail

}  // namespace torvan::java
