// Calls without a declaration.
#pragma once

#include <torvan/java/detail/Undeclared.h>

namespace torvan::java {

// Calls an instance method by its name: `Call<jint>(list, "size")`, `Call<void>(list, "add", 0, element)`.
// A Thread may come first. The method is the one of the object's own class whose parameters are the types of the
// arguments, else the only one that they are assignable to (numbers widened, or made objects where nothing takes them
// as they are); R is void for any result, or takes the one that there is. It is looked up each time, some of it by
// reflection, which takes microseconds: declare a Method for what is called often.
// Throws as a Method does, and Misuse that lists them when several methods take the arguments, or when the result is
// none that R can take.
template <typename R, typename... U>
R Call(const U&... given) {
  return detail::Enter(
      detail::CallEnv, [](JNIEnv* env, const auto&... rest) -> R { return detail::CallNamed<R>(env, rest...); },
      given...);
}

// Calls a static method by the names of its class and its own: `CallStatic<jint>("java/lang/Math", "max", 3, 4)`. In
// place of the class's name goes a reference to the class. For the rest as Call.
template <typename R, typename... U>
R CallStatic(const U&... given) {
  return detail::Enter(
      detail::CallEnv, [](JNIEnv* env, const auto&... rest) -> R { return detail::CallStaticNamed<R>(env, rest...); },
      given...);
}

// Makes an object of the class that tag T names: `New<Builder>("text")`. For the rest as Call.
template <typename T, typename... U>
Local<T> New(const U&... given) {
  return detail::Enter(
      detail::CallEnv, [](JNIEnv* env, const auto&... rest) { return detail::NewTagged<T>(env, rest...); }, given...);
}

}  // namespace torvan::java
