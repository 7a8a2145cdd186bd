#include "platform/posix/Registry.h"

#include <cstring>

namespace torvan::platform {

using mirel::base::CUnicodeString;

namespace {

constexpr RX::UniChar Separator = u'\\';

bool AreEqual(const CUnicodeString& left, const CUnicodeString& right) { return left.CompareIgnoreCase(right) == 0; }

bool IsBelow(const CUnicodeString& path, const CUnicodeString& key) {
  const unsigned int length = key.GetLength();
  return path.GetLength() > length && path[length] == Separator && AreEqual(path.Mid(0, length), key);
}

// The component of `path` that comes behind `key`.
CUnicodeString ComponentBehind(const CUnicodeString& path, const CUnicodeString& key) {
  const unsigned int start = key.GetLength() + 1;
  const int end = path.Find(Separator, start);
  return end < 0 ? path.Mid(start) : path.Mid(start, static_cast<unsigned int>(end) - start);
}

}  // namespace

void Registry::AddValue(const CUnicodeString& key, const CUnicodeString& name, const CUnicodeString& text) {
  m_values.Add(Value{key, name, text});
  m_values.Sort(CompareByKey);
}

int Registry::CompareByKey(const void* left, const void* right) {
  return static_cast<const Value*>(left)->key.CompareIgnoreCase(static_cast<const Value*>(right)->key);
}

bool Registry::HasKey(const CUnicodeString& key) const {
  for (unsigned int i = 0; i < m_values.GetSize(); ++i) {
    if (AreEqual(m_values[i].key, key) || IsBelow(m_values[i].key, key)) return true;
  }
  return false;
}

const CUnicodeString* Registry::FindValue(const CUnicodeString& key, const RX::UniChar* name) const {
  for (unsigned int i = 0; i < m_values.GetSize(); ++i) {
    const Value& value = m_values[i];
    if (AreEqual(value.key, key) && AreEqual(value.name, name)) return &value.text;
  }
  return nullptr;
}

CUnicodeString Registry::GetSubKeyName(const CUnicodeString& key, unsigned int index) const {
  CUnicodeString name;
  unsigned int count = 0;
  for (unsigned int i = 0; i < m_values.GetSize(); ++i) {
    if (!IsBelow(m_values[i].key, key)) continue;
    const CUnicodeString next = ComponentBehind(m_values[i].key, key);
    if (count > 0 && AreEqual(next, name)) continue;
    name = next;
    if (count++ == index) return name;
  }
  return {};
}

Status OpenedKey::Open(const RX::UniChar* subKey, RegistryKey* key) const {
  CUnicodeString path = m_path;
  if (subKey != nullptr && *subKey != 0) path = m_path + RX_TEXT("\\") + subKey;
  if (!m_registry->HasKey(path)) return StatusFileNotFound;
  *key = new OpenedKey(m_registry, path);
  return StatusOk;
}

Status OpenedKey::Query(const RX::UniChar* name, void* buffer, unsigned int* size) const {
  const CUnicodeString* const text = m_registry->FindValue(m_path, name);
  if (text == nullptr) return StatusFileNotFound;
  const unsigned int room = *size;
  *size = (text->GetLength() + 1) * static_cast<unsigned int>(sizeof(RX::UniChar));
  if (buffer == nullptr) return StatusOk;
  if (room < *size) return StatusMoreData;
  std::memcpy(buffer, static_cast<const RX::UniChar*>(*text), *size);
  return StatusOk;
}

Status OpenedKey::Enumerate(unsigned int index, RX::UniChar* name, unsigned int* length) const {
  const CUnicodeString text = m_registry->GetSubKeyName(m_path, index);
  if (text.GetLength() == 0) return StatusNoMoreItems;
  if (*length <= text.GetLength()) return StatusMoreData;
  *length = text.GetLength();
  std::memcpy(name, static_cast<const RX::UniChar*>(text), (*length + 1) * sizeof(RX::UniChar));
  return StatusOk;
}

}  // namespace torvan::platform
