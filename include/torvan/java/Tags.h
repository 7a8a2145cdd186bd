// Tags: the Java classes that references and members are declared for.
#pragma once

#include <torvan/jni/JniTypes.h>

#include <cstddef>
#include <type_traits>

namespace torvan::java {

// A tag is any type with `JavaName`, the class's name with slashes; it needs no members and no objects of it are made.
// `using Super = ...` names the tag of a class or interface that it extends, so that its references can be passed where
// that one's are expected. References of every tag can be passed as Object, and as another tag of the same name.
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

template <typename E>
struct Array;

namespace detail {

// The letter of the primitive type that a C++ number is in Java; 0 for any other type. Java's integers go by width and
// sign, because jlong is `long` on one system and `long long` on another.
template <typename T>
constexpr char NumberLetter() {
  if constexpr (std::is_same_v<T, bool> || std::is_same_v<T, jboolean>) {
    return 'Z';
  } else if constexpr (std::is_same_v<T, char16_t> || std::is_same_v<T, jchar>) {
    return 'C';
  } else if constexpr (std::is_same_v<T, char> || std::is_same_v<T, wchar_t>) {
    return 0;
  } else if constexpr (std::is_same_v<T, std::byte>) {
    return 'B';
  } else if constexpr (std::is_integral_v<T> && std::is_signed_v<T>) {
    return sizeof(T) == 1 ? 'B' : sizeof(T) == 2 ? 'S' : sizeof(T) == 4 ? 'I' : 'J';
  } else {
    return std::is_same_v<T, float> ? 'F' : std::is_same_v<T, double> ? 'D' : 0;
  }
}

// Evaluated where a call is compiled, and not before: until then a tag may be incomplete.
template <typename T, typename = void>
constexpr bool IsTag = false;
template <typename T>
constexpr bool IsTag<T, std::void_t<decltype(T::JavaName)>> = true;

template <typename T>
constexpr bool RequireTag() {
  static_assert(IsTag<T>,
                "torvan::java: a Java class is named by a tag, a struct with 'static constexpr char JavaName[]', and "
                "this type is none");
  return IsTag<T>;
}

// False for every type: for the static_assert of a template that no argument fits.
template <typename T>
constexpr bool IsNever = false;

template <typename T>
constexpr bool IsArrayTag = false;
template <typename E>
constexpr bool IsArrayTag<Array<E>> = true;

template <typename T, typename = void>
struct SuperOf {
  using Type = void;
};
template <typename T>
struct SuperOf<T, std::void_t<typename T::Super>> {
  using Type = typename T::Super;
};

// Whether two tags name one class: the host's own tag of a class is as good as the layer's.
template <typename A, typename B, typename = void>
constexpr bool IsSameName = false;
template <typename A, typename B>
constexpr bool IsSameName<A, B, std::void_t<decltype(A::JavaName), decltype(B::JavaName)>> = [] {
  const auto slashed = [](char unit) { return unit == '.' ? '/' : unit; };
  std::size_t i = 0;
  while (A::JavaName[i] != 0 && slashed(A::JavaName[i]) == slashed(B::JavaName[i])) ++i;
  return slashed(A::JavaName[i]) == slashed(B::JavaName[i]);
}();

template <typename Sub, typename Base>
constexpr bool IsA();

// An array of numbers is an array of the same numbers only; one of objects is also an array of whatever its elements
// are.
template <typename Sub, typename Base>
constexpr bool IsArrayOf(const Array<Sub>*, const Array<Base>*) {
  if constexpr (NumberLetter<Sub>() != 0 || NumberLetter<Base>() != 0) {
    return NumberLetter<Sub>() == NumberLetter<Base>();
  } else {
    return IsA<Sub, Base>();
  }
}

// Whether every object of tag Sub is known to be one of tag Base.
template <typename Sub, typename Base>
constexpr bool IsA() {
  if constexpr (std::is_same_v<Sub, Base> || std::is_same_v<Base, Object>) {
    return true;
  } else if constexpr (IsArrayTag<Sub> && IsArrayTag<Base>) {
    return IsArrayOf(static_cast<const Sub*>(nullptr), static_cast<const Base*>(nullptr));
  } else if constexpr (std::is_void_v<typename SuperOf<Sub>::Type>) {
    return IsSameName<Sub, Base>;
  } else {
    return IsSameName<Sub, Base> || IsA<typename SuperOf<Sub>::Type, Base>();
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
