// Runtime type records.
#pragma once

#include <mirel/Export.h>

namespace mirel::base {

class CObject;

// Describes one class at run time: its name, its parent's name, the size of its objects.
// Records are static objects that exist while their library is loaded; they never change, and any thread may read them.
// A parent is found by its registered name, and only when it is asked for, because a record can be built before its
// parent's.
class MIREL_API CClass {
 public:
  // Registers a class. The texts are 8-bit, "::" between namespaces, and are not copied.
  // `reserved1`, `reserved2` and `create` (a function that makes a default instance) may be null and are ignored:
  // nothing is created by class name. Throws nothing.
  CClass(const char* name, const char* parentName, const char* reserved1, const char* reserved2,
         unsigned int instanceSize, CObject* (*create)()) noexcept;
  ~CClass();
  CClass(const CClass&) = delete;
  CClass& operator=(const CClass&) = delete;

  const char* GetName() const noexcept { return m_name; }
  const char* GetParentName() const noexcept { return m_parentName; }
  // The size of one object, in bytes.
  unsigned int GetInstanceSize() const noexcept { return m_instanceSize; }

  // Returns the parent's record, or null when no class of that name is registered.
  const CClass* GetParent() const noexcept;

 private:
  const char* m_name;
  const char* m_parentName;
  unsigned int m_instanceSize;
  CClass* m_next;
};

}  // namespace mirel::base
