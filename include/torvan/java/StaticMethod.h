// Static methods.
#pragma once

#include <torvan/java/detail/Function.h>

namespace torvan::java {

// A static method, with the class that has it and its C++ signature:
//
//   constexpr java::StaticMethod<jint(jint, jint)> Max{"java/lang/Math", "max"};
//   jint larger = Max(3, 4);
//
// What Method says holds for it, except that no object is passed.
template <typename F>
class StaticMethod : public detail::Function<detail::MemberKind::StaticMethod, void, F> {
 public:
  constexpr StaticMethod(const char* type, const char* name, const char* descriptor = nullptr)
      : StaticMethod::Function(type, name, descriptor) {}
};

}  // namespace torvan::java
