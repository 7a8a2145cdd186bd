// The tag of Java's arrays.
#pragma once

#include <torvan/java/detail/Descriptor.h>

namespace torvan::java {

// Java's array of E: a number of the conversion table, a tag, or another Array. Local<Array<jint>> refers to an int[],
// Ref<Array<Array<jdouble>>> takes a double[][]; an Array<Integer> goes where an Array<Object> is wanted. A std::vector
// that is an argument or a result becomes one and needs no reference; Elements works in one that there is.
template <typename E>
struct Array {
  static constexpr const auto& JavaName = detail::ArrayNameOf<E>.data;
};

}  // namespace torvan::java
