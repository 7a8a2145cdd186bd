// Instance methods.
#pragma once

#include <torvan/java/detail/Function.h>

namespace torvan::java {

// An instance method of the class that tag T names, with its C++ signature:
//
//   constexpr java::Method<Rows, std::string(jint)> GetString{"getString"};
//   std::string name = GetString(rows, 1);
//
// Declared once, constexpr; inside a function `static constexpr`, or it is found anew each time that the function runs.
// The compiler makes the descriptor of the C++ types, or checks the one given as the last argument against them; give
// it where Java's declared classes are others than those of the C++ types. The method is found at the first call, by
// any thread, and kept with its class. Names are literals in UTF-8.
//
// A call takes a Thread (optional, saves the look for the environment), the object as any reference of T or of a tag
// that extends it, and the arguments. It throws Error for what Java throws and for a look-up that fails (which says
// what there is instead), Misuse for a null object, for a null result where the C++ type has none ("... returned null
// ...") and for text that is not UTF-8, and as Thread() does. Local references that it makes on the way end with it.
// Where raw JNI or the fixed interface left an exception pending, a call does not start, but takes that and throws it;
// with a Thread given, which saves that look, too, it is thrown after the call.
template <typename T, typename F>
class Method : public detail::Function<detail::MemberKind::Method, T, F> {
 public:
  constexpr explicit Method(const char* name, const char* descriptor = nullptr)
      : Method::Function(nullptr, name, descriptor) {}
};

// The version of an instance method that class T itself has or inherits, whatever the object's class has instead: what
// `super.name(...)` calls in Java. Declared and called as a Method.
template <typename T, typename F>
class SuperMethod : public detail::Function<detail::MemberKind::SuperMethod, T, F> {
 public:
  constexpr explicit SuperMethod(const char* name, const char* descriptor = nullptr)
      : SuperMethod::Function(nullptr, name, descriptor) {}
};

}  // namespace torvan::java
