// Runtime type records.
#pragma once

#include <mirel/Export.h>

namespace mirel::base {

class CObject;

// Describes one class at run time: its name, its parent's name, the size of its objects.
// Records are static objects that exist from load to unload of their library; they are immutable and may be read by any
// thread. A parent is found by its registered name, and only when asked for, since a record can be built before its
// parent's.
class MIREL_API CClass {
 public:
  // Registers a class. The texts are 8-bit, "::" between namespaces, and are not copied.
  // `reserved1`, `reserved2` and `create` (which makes a default instance) may be null and are not looked at: nothing
  // is made by its class name. Throws nothing.
  CClass(const char* name, const char* parentName, const char* reserved1, const char* reserved2,
         unsigned int instanceSize, CObject* (*create)()) noexcept;
  ~CClass();
  CClass(const CClass&) = delete;
  CClass& operator=(const CClass&) = delete;

  const char* GetName() const noexcept { return m_name; }
  const char* GetParentName() const noexcept { return m_parentName; }
  // The size of one object, in bytes.
  unsigned int GetInstanceSize() const noexcept { return m_instanceSize; }

  // Gives the parent's record, or null when no class of that name is registered.
  const CClass* GetParent() const noexcept;

 private:
  const char* m_name;
  const char* m_parentName;
  unsigned int m_instanceSize;
  CClass* m_next;
};

}  // namespace mirel::base
