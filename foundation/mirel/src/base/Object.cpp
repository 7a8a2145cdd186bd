#include <mirel/base/Object.h>

#include <cstdint>

namespace mirel::base {

CObject::~CObject() = default;

const CClass* CObject::GetClass() const { return &m_classCObject; }

int CObject::GetHashCode() const {
  // The lowest bits of an address only show its alignment.
  return static_cast<int>(static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(this) >> 4));
}

bool CObject::Equals(const CObject* other) const { return other == this; }

CObject* CObject::Clone() const { return nullptr; }

bool CObject::IsInstanceOf(const CClass* type) const {
  if (type == nullptr) return false;
  const CClass* record = GetClass();
  while (record != nullptr && record != type) record = record->GetParent();
  return record == type;
}

}  // namespace mirel::base
