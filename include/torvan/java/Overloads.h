// Several members of one name as one callable.
#pragma once

#include <torvan/java/detail/Function.h>

#include <array>
#include <cstddef>
#include <utility>

namespace torvan::java {

namespace detail {

// How well a member takes the values: 0 not at all, 1 as they are, 2 with numbers boxed.
template <typename... A, typename... U>
constexpr int PhaseOf(Types<A...>, Types<U...>) {
  if constexpr (sizeof...(A) != sizeof...(U)) {
    return 0;
  } else {
    int phase = 1;
    for (const Fit fit : {Fit::Direct, Fitting<A, U>::Find()...}) {
      if (fit == Fit::None) return 0;
      if (fit == Fit::Boxed) phase = 2;
    }
    return phase;
  }
}

// Whether every argument of one member is at least as specific as that of the other.
template <typename... A, typename... B>
constexpr bool IsAtLeastAsSpecial(Types<A...>, Types<B...>) {
  if constexpr (sizeof...(A) != sizeof...(B)) {
    return false;
  } else {
    return (IsSubtype<A, B>() && ...);
  }
}

template <typename Signature, typename... Other>
constexpr std::array<bool, sizeof...(Other)> RowOf(Signature own, Types<Other...>) {
  return {IsAtLeastAsSpecial(own, Other())...};
}

// The index of the member that Java would choose: of those that take the values in the earliest phase, the one that is
// more specific than all others. `none` and `several` are no indexes.
struct Choice {
  std::size_t index;
  bool none;
  bool several;
};
template <typename... Signature, typename Values>
constexpr Choice Choose(Types<Signature...>, Values values) {
  constexpr std::size_t count = sizeof...(Signature);
  const std::array<int, count> phases{PhaseOf(Signature(), values)...};
  int first = 0;
  for (const int phase : phases) {
    if (phase != 0 && (first == 0 || phase < first)) first = phase;
  }
  if (first == 0) return {0, true, false};
  const std::array<std::array<bool, count>, count> special{RowOf(Signature(), Types<Signature...>())...};
  std::size_t best = 0;
  int found = 0;
  for (std::size_t i = 0; i < count; ++i) {
    bool wins = phases[i] == first;
    for (std::size_t j = 0; j < count; ++j) {
      if (phases[j] == first && !special[i][j]) wins = false;
    }
    if (wins) {
      best = i;
      ++found;
    }
  }
  return {best, false, found != 1};
}
template <std::size_t I, typename M>
struct Slot {
  M member;
};

template <typename Indexes, typename... M>
struct Slots;
template <std::size_t... I, typename... M>
struct Slots<std::index_sequence<I...>, M...> : Slot<I, M>... {
  constexpr explicit Slots(const char* name) : Slot<I, M>{M{name}}... {}
  constexpr explicit Slots(const M&... members) : Slot<I, M>{members}... {}

  template <std::size_t J, typename N>
  static constexpr const N& At(const Slot<J, N>& slot) {
    return slot.member;
  }
};

}  // namespace detail

// Several members as one callable; each call goes to the one that Java would choose, found by the compiler.
//
//   constexpr java::Overloads Append{java::Method<Builder, java::Local<Builder>(jint)>{"append"},
//                                    java::Method<Builder, java::Local<Builder>(std::string_view)>{"append"}};
//   constexpr java::Overloads<java::Constructor<Builder()>, java::Constructor<Builder(jint)>> NewBuilder;
//
// All are methods, or all static methods, or all constructors. As in Java, the member with the most specific arguments
// is called: an int before a long before a double, a String before an Object; a number is boxed (for an optional
// number) only where nothing takes it as it is. No such member, or several, is a compile-time error. It is called, and
// throws, like its members.
template <typename... M>
class Overloads : private detail::Slots<std::index_sequence_for<M...>, M...> {
 public:
  constexpr explicit Overloads(const M&... members) : Overloads::Slots(members...) {}
  // All with the same name, and descriptors made from their types.
  constexpr explicit Overloads(const char* name) : Overloads::Slots(name) {}
  constexpr Overloads() : Overloads::Slots(M{}...) {}

  template <typename... U>
  decltype(auto) operator()(const U&... given) const {
    constexpr detail::Choice choice =
        detail::Choose(detail::Types<typename M::Arguments...>(), Values(detail::Types<detail::Plain<U>...>()));
    static_assert(!choice.none, "torvan::java: none of these overloads takes these arguments");
    static_assert(!choice.several,
                  "torvan::java: several of these overloads take these arguments equally well; cast an argument");
    if constexpr (!choice.none && !choice.several) return this->template At<choice.index>(*this)(given...);
  }

 private:
  static constexpr detail::MemberKind kind = std::get<0>(std::array{M::kind...});
  static_assert(((M::kind == kind) && ...),
                "torvan::java: overloads are all methods, all static ones or all constructors");

  // The values without a Thread and the object.
  template <typename... U>
  static constexpr auto Values(detail::Types<Thread, U...>) {
    return WithoutObject(detail::Types<U...>());
  }
  template <typename... U>
  static constexpr auto Values(detail::Types<U...> values) {
    return WithoutObject(values);
  }
  static constexpr auto WithoutObject(detail::Types<>) { return detail::Types<>(); }
  template <typename First, typename... U>
  static constexpr auto WithoutObject(detail::Types<First, U...> values) {
    if constexpr (detail::HasObject(kind)) {
      return detail::Types<U...>();
    } else {
      return values;
    }
  }
};

}  // namespace torvan::java
