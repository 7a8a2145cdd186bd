// Which C++ values may be given for which Java types, and the texts of the mistakes.
#pragma once

#include <torvan/java/detail/ArrayRow.h>
#include <torvan/java/detail/Callback.h>

#include <cstddef>
#include <type_traits>
#include <utility>

namespace torvan::java::detail {

template <typename... T>
struct Types {};

// The type that a value is given as; an array is a pointer.
template <typename U>
using Plain = std::decay_t<const U>;

// What may be given but not declared: null, and references of the fixed interface and of JNI.
struct NullRow {
  static constexpr char Letter = 'L';
  static constexpr bool IsUnknown = true;
};
template <typename From>
struct ForeignRow {
  static constexpr char Letter = 'L';
  using Tag = From;
  static constexpr bool IsUnknown = std::is_same_v<From, Object>;  // then its class is tested at each call
  static Passed Pass(JNIEnv*, const Ref<From>& ref) { return Passed(ref.Get()); }
};

// The row that converts a given value.
template <typename U>
constexpr auto FindGiven() {
  if constexpr (Row<U>::Letter != 0) {
    return Row<U>();
  } else if constexpr (std::is_null_pointer_v<U> || std::is_same_v<U, std::nullopt_t>) {
    return NullRow();
  } else if constexpr (!std::is_void_v<typename TagOf<U>::Type>) {
    return ForeignRow<typename TagOf<U>::Type>();
  } else if constexpr (std::is_convertible_v<const U&, const char*>) {
    return Row<const char*>();
  } else if constexpr (std::is_convertible_v<const U&, const char16_t*>) {
    return Row<const char16_t*>();
  } else if constexpr (std::is_convertible_v<const U&, std::string_view>) {
    return Row<std::string_view>();
  } else if constexpr (std::is_convertible_v<const U&, std::u16string_view>) {
    return Row<std::u16string_view>();
  } else {
    return Row<U>();
  }
}
template <typename U>
using Given = decltype(FindGiven<std::remove_cv_t<U>>());

template <typename G, typename = void>
constexpr bool IsUnknown = false;
template <typename G>
constexpr bool IsUnknown<G, std::enable_if_t<G::IsUnknown>> = true;

template <typename G>
constexpr bool IsText() {
  if constexpr (G::Letter != 'L' || IsUnknown<G>) {
    return false;
  } else {
    return std::is_same_v<typename G::Tag, String>;
  }
}

constexpr bool IsNumber(char letter) { return letter != 0 && letter != 'L' && letter != 'Z' && letter != 'V'; }

// Java's widening of numbers, except where it loses digits: from a long to a double, from an int to a float. Nothing
// widens to a char, nor a char to a number, because those are usually mistakes.
constexpr bool Widens(char from, char to) {
  if (from == to) return true;
  switch (to) {
    case 'S':
      return from == 'B';
    case 'I':
      return from == 'B' || from == 'S';
    case 'J':
      return from == 'B' || from == 'S' || from == 'I';
    case 'F':
      return from == 'B' || from == 'S';
    case 'D':
      return from == 'B' || from == 'S' || from == 'I' || from == 'F';
    default:
      return false;
  }
}

// A C++ function, which can be passed where an object of an interface is declared.
template <typename U>
constexpr bool IsFunction = Row<U>::Letter == 0 && !std::is_void_v<typename SignatureOf<U>::Type>;

template <typename A>
constexpr bool TakesFunction() {
  if constexpr (Row<A>::Letter != 'L') {
    return false;
  } else {
    using Tag = typename Row<A>::Tag;
    return !std::is_same_v<Tag, Object> && !std::is_same_v<Tag, String> && !std::is_same_v<Tag, Class> &&
           !std::is_same_v<Tag, Throwable>;
  }
}

enum class Fit { None, Direct, Boxed };

// Whether elements that are declared as a host's own type are of that type: a vector of numbers is not one of amounts.
template <typename A, typename U>
struct ElementsFit : std::bool_constant<!IsOwnType<A> || std::is_same_v<A, U>> {};
template <typename A, typename AllocatorA, typename U, typename AllocatorU>
struct ElementsFit<std::vector<A, AllocatorA>, std::vector<U, AllocatorU>> : ElementsFit<A, U> {};
template <typename A, typename U>
struct ElementsFit<std::optional<A>, U> : ElementsFit<A, U> {};
template <typename A, typename U>
struct ElementsFit<A, std::optional<U>> : ElementsFit<A, U> {};
template <typename A, typename U>
struct ElementsFit<std::optional<A>, std::optional<U>> : ElementsFit<A, U> {};

// Whether a U may be given where A is declared; Fit::Boxed when a number has to become an object.
template <typename A, typename U>
struct Fitting {
  static constexpr Fit Find() {
    using G = Given<U>;
    if constexpr (IsOwnType<A>) {
      return std::is_convertible_v<const U&, A> ? Fit::Direct : Fit::None;
    } else if constexpr (IsFunction<U>) {
      return TakesFunction<A>() ? Fit::Direct : Fit::None;
    } else if constexpr (Row<A>::Letter == 'L' && G::Letter == 'L') {
      if constexpr (IsUnknown<G>) {
        return Fit::Direct;
      } else {
        return IsA<typename G::Tag, typename Row<A>::Tag>() && ElementsFit<A, U>() ? Fit::Direct : Fit::None;
      }
    } else {
      return G::Letter != 0 && Widens(G::Letter, Row<A>::Letter) ? Fit::Direct : Fit::None;
    }
  }
};
template <typename E, typename U>
struct Fitting<std::optional<E>, U> {
  static constexpr Fit Find() {
    if constexpr (Row<E>::Letter != 'L' && Fitting<E, U>::Find() != Fit::None) {
      return Fit::Boxed;
    } else if constexpr (IsFunction<U>) {
      return Fitting<E, U>::Find();
    } else if constexpr (IsOwnType<E>) {
      return std::is_convertible_v<const U&, std::optional<E>> || std::is_null_pointer_v<U> ? Fit::Direct : Fit::None;
    } else if constexpr (IsUnknown<Given<U>> || Given<U>::Letter != 'L') {
      return IsUnknown<Given<U>> ? Fit::Direct : Fit::None;
    } else {
      using Tag = typename Row<std::optional<E>>::Tag;
      return IsA<typename Given<U>::Tag, Tag>() && ElementsFit<E, U>() ? Fit::Direct : Fit::None;
    }
  }
};
template <typename A>
constexpr bool IsOptionalOwn = false;
template <typename E>
constexpr bool IsOptionalOwn<std::optional<E>> = IsOwnType<E>;

template <typename A, typename U>
constexpr bool Fits = Fitting<A, U>::Find() != Fit::None;

// Whether every value of Java's type for A is one of the type for B: how Java orders overloads.
template <typename A, typename B>
constexpr bool IsSubtype() {
  if constexpr (Row<A>::Letter == 'L' && Row<B>::Letter == 'L') {
    return IsA<typename Row<A>::Tag, typename Row<B>::Tag>();
  } else if constexpr (Row<A>::Letter == 'J' || Row<A>::Letter == 'I') {
    return Widens(Row<A>::Letter, Row<B>::Letter) || Row<B>::Letter == 'F' || Row<B>::Letter == 'D';
  } else {
    return Widens(Row<A>::Letter, Row<B>::Letter);
  }
}

// The texts that a person sees: one for each mistake and one that has the rest, so that each wrong argument is one
// error that begins with its text. The types and the place are in the notes: declared, given, and which argument it is.
template <typename A, typename U, std::size_t Number>
constexpr bool ArgumentFits() {
  constexpr bool good = Fits<A, U>;
  constexpr bool own = IsOwnType<A>;
  constexpr char a = Row<A>::Letter;
  constexpr char u = Given<U>::Letter;
  constexpr bool text = IsText<Given<U>>();
  constexpr bool numbers = IsNumber(a) && IsNumber(u);
  constexpr bool wide = u == 0 && std::is_integral_v<U>;
  constexpr bool vectors = HasElements<A> && HasElements<U>;
  static_assert(good || !own, "torvan::java: this value is not the host's own type that the declaration has");
  static_assert(good || own || !(a != 'L' && text),
                "torvan::java: text is given where the Java method takes a number or a boolean");
  static_assert(
      good || own || !numbers,
      "torvan::java: this number may not fit the Java type, which is narrower or of another kind; cast it where "
      "you know that it does");
  static_assert(
      good || own || !wide,
      "torvan::java: Java has no integer type for this one (unsigned of 32 or 64 bit, char, wchar_t); cast it to "
      "one that Java has");
  static_assert(good || own || !(a == 'L' && (IsNumber(u) || u == 'Z')),
                "torvan::java: a number or a bool is given where the Java method takes an object");
  static_assert(good || own || !vectors,
                "torvan::java: this vector becomes another Java array than the argument; give one with the declared "
                "elements");
  static_assert(
      good || own || vectors || !(a == 'L' && u == 'L'),
      "torvan::java: this reference is of another class than the argument; give its tag 'using Super = ...;' or "
      "use Cast<T>(reference)");
  static_assert(good || own || !(a == 'Z' && IsNumber(u)),
                "torvan::java: a number is given where the Java method takes a boolean");
  static_assert(good || own || !(IsNumber(a) && u == 'Z'),
                "torvan::java: a bool or uint8_t, Java's boolean, is given where the Java method takes a number");
  static_assert(good || own || !(a != 'L' && u == 'L' && !text),
                "torvan::java: an object is given where the Java method takes a number or a boolean");
  static_assert(good || own || !IsFunction<U>,
                "torvan::java: a function is given where the Java method takes no object of an interface");
  static_assert(good || own || u != 0 || wide || IsFunction<U>,
                "torvan::java: no conversion of this C++ type to Java; specialise torvan::java::Convert for it");
  return good;
}

// Checked when a member is declared; tags may be incomplete.
template <typename R, typename... A>
constexpr bool RequireDeclared() {
  static_assert(
      ((Row<Declared<A>>::Letter != 0 && Row<Declared<A>>::Letter != 'V') && ...),
      "torvan::java: an argument of this declaration has a C++ type that Java has no type for (such as an unsigned of "
      "32 or 64 bit, char or a pointer); specialise torvan::java::Convert for a type of your own");
  static_assert(Row<R>::Letter != 0,
                "torvan::java: the result of this declaration has a C++ type that Java has no type for; specialise "
                "torvan::java::Convert for a type of your own");
  static_assert(Row<R>::Letter == 0 || Row<R>::IsResult,
                "torvan::java: the result of this declaration would refer to what is gone; use std::string, "
                "std::u16string or Local<T>");
  return true;
}

template <typename... A, typename... U, std::size_t... I>
constexpr bool AllFit(Types<A...>, Types<U...>, std::index_sequence<I...>) {
  return (0 + ... + (ArgumentFits<A, U, I + 1>() ? 0 : 1)) == 0;
}
template <typename... A, typename... U>
constexpr bool ArgumentsFit(Types<A...> declared, Types<U...> given) {
  static_assert(sizeof...(U) >= sizeof...(A), "torvan::java: too few arguments for this Java method");
  static_assert(sizeof...(U) <= sizeof...(A), "torvan::java: too many arguments for this Java method");
  if constexpr (sizeof...(A) == sizeof...(U)) {
    return AllFit(declared, given, std::index_sequence_for<A...>());
  } else {
    return false;
  }
}

// Whether a method or field of T may be used on a Self.
template <typename T, typename Self>
constexpr bool ObjectFits() {
  using From = typename TagOf<Self>::Type;
  constexpr bool isReference = !std::is_void_v<From>;
  static_assert(isReference, "torvan::java: the first argument of a method or field is the object that has it");
  if constexpr (!RequireTag<T>()) {
    return false;
  } else if constexpr (isReference) {
    constexpr bool good = IsUnknown<Given<Self>> || IsA<From, T>();
    static_assert(good,
                  "torvan::java: the method or field belongs to another class than the object; give the object's tag "
                  "'using Super = ...;' or use Cast<T>(object)");
    return good;
  } else {
    return false;
  }
}

// Converts a value that fits to Java. References are valid as long as what is returned lives.
template <typename A, typename U>
auto Pass(JNIEnv* env, const U& given) {
  constexpr char letter = Row<A>::Letter;
  if constexpr (letter != 'L') {
    using From = std::conditional_t<IsOwnType<A>, Row<A>, Given<U>>;
    jvalue value{};
    Jni<letter>::In(value) = JniNumber<letter>(From::Value(given));
    return value;
  } else if constexpr (std::is_null_pointer_v<U> || std::is_same_v<U, std::nullopt_t>) {
    return Passed();
  } else if constexpr (IsFunction<U> && !IsOwnType<A>) {
    return Passed(env, NewFunctionObject<typename Row<A>::Tag>(env, given));
  } else if constexpr (IsUnknown<Given<U>>) {
    return Passed(Ref<typename Row<A>::Tag>(given).Get());
  } else if constexpr (Fitting<A, U>::Find() == Fit::Boxed) {
    return Row<A>::Pass(env, A(static_cast<typename A::value_type>(given)));
  } else if constexpr (IsOwnType<A> || IsOptionalOwn<A>) {
    return Row<A>::Pass(env, given);
  } else {
    return Given<U>::Pass(env, given);
  }
}

}  // namespace torvan::java::detail
