// An array of owned objects.
#pragma once

#include <mirel/base/Object.h>
#include <mirel/util/Vector.h>

namespace mirel::util {

// Owns its objects and keeps them in the order in which they were added.
// Copying clones every object; one without a clone throws CIllegalArgumentException "Object without a clone.". Throws
// CMemoryException when memory runs out. Whenever something is thrown, the vector is unchanged.
class MIREL_API CObjectVector : public base::CBase {
 public:
  // Reserves room for `initialCapacity` objects; grows in steps of `increment` (0 means 5).
  CObjectVector(unsigned int initialCapacity, unsigned int increment);
  CObjectVector(const CObjectVector& other);
  ~CObjectVector();
  CObjectVector& operator=(const CObjectVector& other);

  unsigned int GetSize() const noexcept { return m_objects.GetSize(); }
  // Returns the object at `index`. Throws CNoSuchElementException (no message) when `index` is not below the size.
  const base::CObject& operator[](unsigned int index) const { return *m_objects[index]; }

  // Appends an object and takes ownership of it, even when it throws.
  // Throws CIllegalArgumentException "Invalid object." for null.
  void Add(base::CObject* object);
  // Tells whether the vector holds an object that equals this one, by its own Equals. It never holds null.
  bool Contains(const base::CObject* object) const;
  // Removes and deletes the first object that equals this one.
  // Throws CNoSuchElementException (no message) when there is none.
  void RemoveElement(const base::CObject* object);

 private:
  static void DeleteAll(CVector<base::CObject*>& objects);
  int IndexOf(const base::CObject* object) const;

  RX_NOT_EXPORTED_BEGIN
  CVector<base::CObject*> m_objects;
  RX_NOT_EXPORTED_END
};

}  // namespace mirel::util
