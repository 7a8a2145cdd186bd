// What all options need to compare themselves.
#pragma once

#include <mirel/base/Object.h>

namespace torvan {

// Returns `other` as a T when both objects report the very same class record, else null; null for null.
// A subclass with its own record counts as another class.
template <class T>
const T* SameClass(const T& object, const mirel::base::CObject* other) {
  return other != nullptr && other->GetClass() == object.GetClass() ? static_cast<const T*>(other) : nullptr;
}

}  // namespace torvan
