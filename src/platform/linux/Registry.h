// A registry in memory, read as the Windows registry is.
#pragma once

#include <mirel/base/Base.h>
#include <mirel/base/Ref.h>
#include <mirel/base/UnicodeString.h>
#include <mirel/util/Vector.h>

#include "platform/System.h"

namespace torvan::platform {

// Values by key and name. The path of a key ends with a backslash; the path of the root is empty. A key exists when
// there is a value in it or below it. Keys and names compare without regard to case.
class Registry : public mirel::base::CBase {
 public:
  Registry() : m_values(8, 8) {}

  // Adds a value, which must not be there yet. Throws CMemoryException.
  void AddValue(const mirel::base::CUnicodeString& key, const mirel::base::CUnicodeString& name,
                const mirel::base::CUnicodeString& text);

  // The three questions throw CMemoryException.
  bool HasKey(const mirel::base::CUnicodeString& key) const;
  // Null when there is no such value.
  const mirel::base::CUnicodeString* FindValue(const mirel::base::CUnicodeString& key, const RX::UniChar* name) const;
  // The name of the subkey at an index, in the order of the names; null text after the last.
  mirel::base::CUnicodeString GetSubKeyName(const mirel::base::CUnicodeString& key, unsigned int index) const;

 private:
  struct Value {
    mirel::base::CUnicodeString key;
    mirel::base::CUnicodeString name;
    mirel::base::CUnicodeString text;
  };

  mirel::util::CVector<Value> m_values;
};

// An open key. It sees the registry as it was when its root was opened.
// The operations answer as the functions of the Windows API do; all throw CMemoryException.
class OpenedKey : public mirel::base::CBase {
 public:
  OpenedKey(const mirel::base::CRef<Registry>& registry, const mirel::base::CUnicodeString& path)
      : m_registry(registry), m_path(path) {}

  // Returns a new open key, which the caller deletes.
  Status Open(const RX::UniChar* subKey, RegistryKey* key) const;
  Status Query(const RX::UniChar* name, void* buffer, unsigned int* size) const;
  Status Enumerate(unsigned int index, RX::UniChar* name, unsigned int* length) const;

 private:
  mirel::base::CRef<Registry> m_registry;
  mirel::base::CUnicodeString m_path;
};

}  // namespace torvan::platform
