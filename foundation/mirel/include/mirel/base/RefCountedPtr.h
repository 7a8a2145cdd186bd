// The counter block that references to one object share.
#pragma once

#include <mirel/base/At.h>
#include <mirel/base/IllegalArgumentException.h>

namespace mirel::base {

// Counts the references to one object, and owns the object if told so.
// The count is a plain integer: references that share a block must not be copied or dropped by two threads at once.
// CRef makes, counts and frees blocks; hosts do not.
template <typename T>
class CRefCountedPtr {
 public:
  // Starts with one reference. Throws CIllegalArgumentException "Invalid pointer." for null.
  CRefCountedPtr(T* object, bool owning) : m_object(object), m_owning(owning), m_count(1) {
    if (object == nullptr) {
      throw CIllegalArgumentException("mirel/base/RefCountedPtr", At(98), "Invalid pointer.", nullptr);
    }
  }

  bool IsOwning() const noexcept { return m_owning; }
  unsigned int GetCount() const noexcept { return m_count; }

  void AddReference() noexcept { ++m_count; }
  // Takes one reference away and tells whether none is left. A count of 0 stays 0.
  bool RemoveReference() noexcept {
    if (m_count != 0) --m_count;
    return m_count == 0;
  }

 private:
  T* m_object;
  bool m_owning;
  unsigned int m_count;
};

}  // namespace mirel::base
