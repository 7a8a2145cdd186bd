// The conversion table, open to a host's own types.
#pragma once

namespace torvan::java {

// Converts a C++ type of the host's own to Java and back.
// Specialise it from ConvertAs of a type that the table has: a number, text, a Local<Tag>, an optional of these, or
// another type of yours.
//
//   template <>
//   struct java::Convert<Money> : java::ConvertAs<jlong> {
//     static jlong To(const Money& money) { return money.cents; }
//     static Money From(jlong cents) { return Money{cents}; }
//   };
//
// The type can then be an argument or a result of members, the value of a field, and optional. Leave out the function
// for a direction that is not needed. A null from Java does not reach From, but is a Misuse that names the member; a
// ConvertAs<std::optional<...>> passes it to From.
template <typename T, typename = void>
struct Convert {};

// The base of a Convert: a host type is converted as this type of the table is.
template <typename Via>
struct ConvertAs {
  using Through = Via;
};

}  // namespace torvan::java
