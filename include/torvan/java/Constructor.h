// Constructors.
#pragma once

#include <torvan/java/detail/Function.h>

namespace torvan::java {

namespace detail {

template <typename F>
constexpr bool RequireArguments() {
  static_assert(IsNever<F>,
                "torvan::java: a constructor is declared with its class and arguments, T(A...), as in "
                "Constructor<Builder(jint)>");
  return true;
}

}  // namespace detail

template <typename F>
class Constructor {
  static_assert(detail::RequireArguments<F>());

 public:
  constexpr explicit Constructor(const char* = nullptr) {}
};

// A constructor of the class that tag T names, with the C++ types of its arguments:
//
//   constexpr java::Constructor<Builder(std::string_view)> NewBuilder;
//   java::Local<Builder> builder = NewBuilder("text");
//
// What Method says holds for it, except that no object is passed and the new one is returned.
template <typename T, typename... A>
class Constructor<T(A...)> : public detail::Function<detail::MemberKind::Constructor, T, Local<T>(A...)> {
 public:
  constexpr Constructor() : Constructor(nullptr) {}
  constexpr explicit Constructor(const char* descriptor) : Constructor::Function(nullptr, "<init>", descriptor) {}
};

}  // namespace torvan::java
