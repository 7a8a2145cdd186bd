// The conversion table, open to a host's own types.
#pragma once

namespace torvan::java {

// How a C++ type of the host's own goes to Java and comes from it.
// Specialise it from ConvertAs of a type that the table has: a number, text, a Local<Tag>, an optional of these, or
// another type of yours.
//
//   template <>
//   struct java::Convert<Money> : java::ConvertAs<jlong> {
//     static jlong To(const Money& money) { return money.cents; }
//     static Money From(jlong cents) { return Money{cents}; }
//   };
//
// The type is then an argument and a result of members, the value of fields, and may be optional. A type that only goes
// one way leaves the other function out. A null from Java does not reach From, but is a Misuse that names the member;
// From of a ConvertAs<std::optional<...>> takes it.
template <typename T, typename = void>
struct Convert {};

// The base of a Convert: a host type is converted as this type of the table is.
template <typename Via>
struct ConvertAs {
  using Through = Via;
};

}  // namespace torvan::java
