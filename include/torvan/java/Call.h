// Calls without a declaration.
#pragma once

#include <torvan/java/detail/Undeclared.h>

namespace torvan::java {

// Calls an instance method by its name: `Call<jint>(list, "size")`, `Call<void>(list, "add", 0, element)`.
// A Thread may come first. The method is the one of the object's own class whose parameters are exactly the types of
// the arguments, else the only one that takes them (numbers are widened, and boxed where nothing takes them as they
// are). R is void to ignore the result. The method is looked up at each call, partly by reflection, which takes
// microseconds: declare a Method for frequent calls.
// Throws as a Method does, and Misuse when several methods take the arguments, which it lists, or when R cannot take
// the result.
template <typename R, typename... U>
R Call(const U&... given) {
  return detail::Enter(
      detail::CallEnv, [](JNIEnv* env, const auto&... rest) -> R { return detail::CallNamed<R>(env, rest...); },
      given...);
}

// Calls a static method by the names of its class and its own: `CallStatic<jint>("java/lang/Math", "max", 3, 4)`. A
// reference to the class may take the place of its name. Otherwise like Call.
template <typename R, typename... U>
R CallStatic(const U&... given) {
  return detail::Enter(
      detail::CallEnv, [](JNIEnv* env, const auto&... rest) -> R { return detail::CallStaticNamed<R>(env, rest...); },
      given...);
}

// Makes an object of the class that tag T names: `New<Builder>("text")`. Otherwise like Call.
template <typename T, typename... U>
Local<T> New(const U&... given) {
  return detail::Enter(
      detail::CallEnv, [](JNIEnv* env, const auto&... rest) { return detail::NewTagged<T>(env, rest...); }, given...);
}

}  // namespace torvan::java
