// Fields of objects and of classes.
#pragma once

#include <torvan/java/detail/FieldAccess.h>

namespace torvan::java {

// An instance field of the class that tag T names, with its C++ type:
//
//   constexpr java::Field<Point, jint> X{"x"};
//   X.Set(point, X.Get(point) + 1);
//
// Declared and looked up like a Method, with a descriptor where that needs one. A Thread may be the first argument of
// Get and Set. Both throw as a Method does: what is pending first, and then nothing is read or written. With a Thread,
// where the host vouches that nothing is, the field is read or written nevertheless, and what is pending is thrown only
// by what needs a call, such as the first use and numbers that may be null.
template <typename T, typename V>
class Field : public detail::FieldAccess<detail::MemberKind::Field, T, V> {
 public:
  constexpr explicit Field(const char* name, const char* descriptor = nullptr)
      : Field::FieldAccess(nullptr, name, descriptor) {}
};

// A static field, with the class that has it and its C++ type: `StaticField<jint> Max{"java/lang/Integer",
// "MAX_VALUE"}`, `Max.Get()`, `Count.Set(5)`. Otherwise like Field.
template <typename V>
class StaticField : public detail::FieldAccess<detail::MemberKind::StaticField, void, V> {
 public:
  constexpr StaticField(const char* type, const char* name, const char* descriptor = nullptr)
      : StaticField::FieldAccess(type, name, descriptor) {}
};

}  // namespace torvan::java
