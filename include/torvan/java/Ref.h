// Any reference to a Java object, as a parameter.
#pragma once

#include <torvan/java/Tags.h>
#include <torvan/java/detail/Classes.h>
#include <torvan/java/detail/Pending.h>
#include <torvan/jni/JavaClass.h>
#include <torvan/jni/JavaString.h>

#include <cstddef>
#include <type_traits>

namespace torvan::java {

template <typename T>
class Local;
template <typename T>
class Global;
template <typename T>
class Ref;

namespace detail {

// The tag of a type of reference; void for any other type.
template <typename U, typename = void>
struct TagOf {
  using Type = void;
};
// clang-format off
template <typename T> struct TagOf<Local<T>>  { using Type = T; };
template <typename T> struct TagOf<Global<T>> { using Type = T; };
template <typename T> struct TagOf<Ref<T>>    { using Type = T; };
template <> struct TagOf<jstring>           { using Type = String; };
template <> struct TagOf<jclass>            { using Type = Class; };
template <> struct TagOf<jthrowable>        { using Type = Throwable; };
// clang-format on
template <typename R>
struct TagOf<R*, std::enable_if_t<std::is_base_of_v<_jobject, R> && !std::is_same_v<R*, jstring> &&
                                  !std::is_same_v<R*, jclass> && !std::is_same_v<R*, jthrowable>>> {
  using Type = Object;
};
// A string handle accepts any object; only a class handle is sure to be one.
template <typename U>
struct TagOf<U, std::enable_if_t<std::is_base_of_v<jni::CJavaObject, U>>> {
  using Type = std::conditional_t<std::is_base_of_v<jni::CJavaClass, U>, Class, Object>;
};

// Returns `object`, which is null or was found to be of the tag's class. Throws Misuse
// "A java.lang.Integer is given where a java.sql.Connection is needed", and as ClassOf does.
template <typename T>
jobject Checked(jobject object) {
  if (object != nullptr) {
    JNIEnv* const env = CallEnv();
    RequireInstance(env, object, ClassOf<T>(env));
  }
  return object;
}

}  // namespace detail

// A reference as a parameter: made from any other, owns nothing, and is valid during the call.
// Local, Global and Ref of a tag that is (known as) T's come without a test, as do jstring, jclass, jthrowable and
// CJavaClass where T is their class or Object. For other handles of the fixed interface and for raw references the
// object's class is tested, which throws Misuse "A java.lang.Integer is given where a java.sql.Connection is needed",
// and an exception that is pending, as a call does; make a Local<T> of a handle that is used often.
template <typename T>
class Ref {
 public:
  Ref(std::nullptr_t) noexcept {}

  template <typename U>
  Ref(const Local<U>& other TORVAN_JAVA_LENT) noexcept : m_ref(other.Get()) {
    detail::RequireIsA<U, T>();
  }
  template <typename U>
  Ref(const Global<U>& other TORVAN_JAVA_LENT) noexcept : m_ref(other.Get()) {
    detail::RequireIsA<U, T>();
  }
  template <typename U>
  Ref(const Ref<U>& other) noexcept : m_ref(other.Get()) {
    detail::RequireIsA<U, T>();
  }
  template <typename U, typename From = typename detail::TagOf<U>::Type,
            typename = std::enable_if_t<std::is_base_of_v<jni::CJavaObject, U>>>
  Ref(const U& handle TORVAN_JAVA_LENT) : m_ref(Tested<From>(handle)) {}
  template <typename R, typename From = typename detail::TagOf<R*>::Type,
            typename = std::enable_if_t<std::is_base_of_v<_jobject, R>>>
  Ref(R* raw) : m_ref(Tested<From>(raw)) {}

  Ref(const Ref& other) noexcept = default;
  Ref& operator=(const Ref& other) noexcept = default;

  // The raw reference: of the kind that it was made from, and alive as long as that is. Null for a null reference.
  jobject Get() const noexcept { return m_ref; }
  explicit operator bool() const noexcept { return m_ref != nullptr; }

 private:
  template <typename From>
  static jobject Tested(jobject raw) {
    if constexpr (detail::IsA<From, T>()) {
      return raw;
    } else {
      return detail::Checked<T>(raw);
    }
  }

  jobject m_ref = nullptr;
};

}  // namespace torvan::java
