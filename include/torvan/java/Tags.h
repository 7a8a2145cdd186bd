// Tags: the Java classes that references and members are declared for.
#pragma once

#include <type_traits>

namespace torvan::java {

// A tag is any type with `JavaName`, the class's name with slashes; it needs no members and no objects of it are made.
// `using Super = ...` names the tag of a class or interface that it extends, so that its references go where that one's
// are wanted. Every tag's references go where an Object is wanted.
struct Object {
  static constexpr char JavaName[] = "java/lang/Object";
};
struct String {
  static constexpr char JavaName[] = "java/lang/String";
};
struct Class {
  static constexpr char JavaName[] = "java/lang/Class";
};
struct Throwable {
  static constexpr char JavaName[] = "java/lang/Throwable";
};

namespace detail {

template <typename T, typename = void>
struct SuperOf {
  using Type = void;
};
template <typename T>
struct SuperOf<T, std::void_t<typename T::Super>> {
  using Type = typename T::Super;
};

// Whether every object of tag Sub is known to be one of tag Base.
template <typename Sub, typename Base>
constexpr bool IsA() {
  if constexpr (std::is_same_v<Sub, Base> || std::is_same_v<Base, Object>) {
    return true;
  } else if constexpr (std::is_void_v<typename SuperOf<Sub>::Type>) {
    return false;
  } else {
    return IsA<typename SuperOf<Sub>::Type, Base>();
  }
}

template <typename From, typename To>
constexpr void RequireIsA() {
  static_assert(IsA<From, To>(),
                "torvan::java: this reference is of another class than the one needed here; give its tag "
                "'using Super = ...;' or use Cast<T>(reference)");
}

}  // namespace detail

}  // namespace torvan::java
