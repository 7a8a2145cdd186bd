#include "platform/linux/Registry.h"

#include <cstring>

namespace torvan::platform {

using mirel::base::CUnicodeString;

namespace {

constexpr RX::UniChar Separator = u'\\';

bool AreEqual(const CUnicodeString& left, const CUnicodeString& right) { return left.CompareIgnoreCase(right) == 0; }

// Tells whether a path leads to a key or to one below it.
bool IsWithin(const CUnicodeString& path, const CUnicodeString& key) {
  return path.GetLength() >= key.GetLength() && AreEqual(path.Mid(0, key.GetLength()), key);
}

// The component of a path after the key that it is below; empty when it leads to the key itself.
CUnicodeString ComponentAfter(const CUnicodeString& path, const CUnicodeString& key) {
  const int end = path.Find(Separator, key.GetLength());
  return end < 0 ? CUnicodeString() : path.Mid(key.GetLength(), static_cast<unsigned int>(end) - key.GetLength());
}

}  // namespace

void Registry::AddValue(const CUnicodeString& key, const CUnicodeString& name, const CUnicodeString& text) {
  m_values.Add(Value{key, name, text});
}

bool Registry::HasKey(const CUnicodeString& key) const {
  for (unsigned int i = 0; i < m_values.GetSize(); ++i) {
    if (IsWithin(m_values[i].key, key)) return true;
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
  for (unsigned int count = 0; count <= index; ++count) {
    CUnicodeString next;  // the smallest of the names after `name`
    for (unsigned int i = 0; i < m_values.GetSize(); ++i) {
      if (!IsWithin(m_values[i].key, key)) continue;
      const CUnicodeString candidate = ComponentAfter(m_values[i].key, key);
      if (candidate.CompareIgnoreCase(name) <= 0) continue;
      if (next.GetLength() == 0 || candidate.CompareIgnoreCase(next) < 0) next = candidate;
    }
    if (next.GetLength() == 0) return {};
    name = next;
  }
  return name;
}

Status OpenedKey::Open(const RX::UniChar* subKey, RegistryKey* key) const {
  CUnicodeString path = m_path;
  if (subKey != nullptr && *subKey != 0) path = m_path + subKey + RX_TEXT("\\");
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
