// The tag of Java arrays.
#pragma once

#include <torvan/java/detail/Descriptor.h>

namespace torvan::java {

// The tag of a Java array of E, which is a number of the conversion table, a tag, or another Array. Local<Array<jint>>
// refers to an int[], Ref<Array<Array<jdouble>>> takes a double[][]; an Array<Integer> can be passed where an
// Array<Object> is expected. A std::vector as an argument or a result is converted and needs no such reference;
// Elements works in place, in an array that exists.
template <typename E>
struct Array {
  static constexpr const auto& JavaName = detail::ArrayNameOf<E>.data;
};

}  // namespace torvan::java
