#include <mirel/base/Class.h>

#include <cstring>

namespace mirel::base {
namespace {

// The records of all loaded libraries, the newest first. Constant-initialised, because libraries register from their
// own initialisers.
CClass* s_newest = nullptr;

}  // namespace

CClass::CClass(const char* name, const char* parentName, const char*, const char*, unsigned int instanceSize,
               CObject* (*)()) noexcept
    : m_name(name), m_parentName(parentName), m_instanceSize(instanceSize), m_next(s_newest) {
  s_newest = this;
}

CClass::~CClass() {
  CClass** link = &s_newest;
  while (*link != this) link = &(*link)->m_next;
  *link = m_next;
}

const CClass* CClass::GetParent() const noexcept {
  if (m_parentName == nullptr) return nullptr;
  const CClass* candidate = s_newest;
  while (candidate != nullptr && std::strcmp(candidate->m_name, m_parentName) != 0) candidate = candidate->m_next;
  return candidate;
}

}  // namespace mirel::base
