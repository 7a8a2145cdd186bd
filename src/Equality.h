// What the equality rules of all options have in common.
#pragma once

#include <mirel/base/Object.h>

namespace torvan {

// Gives `other` as a T when both objects report the very same class record, else null; null gives null.
// A subclass with a record of its own is another class: an object equals only objects that know themselves as equals.
template <class T>
const T* AsSameClass(const T& object, const mirel::base::CObject* other) {
  return other != nullptr && other->GetClass() == object.GetClass() ? static_cast<const T*>(other) : nullptr;
}

}  // namespace torvan
