// Instance methods.
#pragma once

#include <torvan/java/detail/Function.h>

namespace torvan::java {

// An instance method of the class that tag T names, with its C++ signature:
//
//   constexpr java::Method<Rows, std::string(jint)> GetString{"getString"};
//   std::string name = GetString(rows, 1);
//
// Declare it once, constexpr; inside a function `static constexpr`, or it is looked up each time that the function
// runs. The compiler makes the descriptor from the C++ types, or checks the last argument against them; pass one where
// Java declares other classes than the C++ types name. The method is looked up at the first call, on any thread, and
// kept together with its class. Names are literals in UTF-8.
//
// A call takes a Thread (optional, saves looking up the environment), the object as any reference of T or of a tag that
// extends it, and the arguments. It throws Error for what Java throws and for a failed look-up (which says what there
// is instead), Misuse for a null object, for a null result where the C++ type has none ("... returned null ...") and
// for text that is not UTF-8, and as Thread() does. The local references that it makes on the way are deleted before it
// returns. When raw JNI or the fixed interface has left an exception pending, a call does not start but clears and
// throws it. With a Thread it does not ask: the host vouches that none is pending (see Thread).
template <typename T, typename F>
class Method : public detail::Function<detail::MemberKind::Method, T, F> {
 public:
  constexpr explicit Method(const char* name, const char* descriptor = nullptr)
      : Method::Function(nullptr, name, descriptor) {}
};

// The version of an instance method that class T itself has or inherits, even if the object's class overrides it: what
// `super.name(...)` calls in Java. Declared and called like a Method.
template <typename T, typename F>
class SuperMethod : public detail::Function<detail::MemberKind::SuperMethod, T, F> {
 public:
  constexpr explicit SuperMethod(const char* name, const char* descriptor = nullptr)
      : SuperMethod::Function(nullptr, name, descriptor) {}
};

}  // namespace torvan::java
