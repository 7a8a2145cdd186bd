// Searching texts and comparing them unit by unit.
#include <mirel/base/UnicodeString.h>

#include "TextBlock.h"

namespace mirel::base {
namespace {

bool AreEqual(const TextPart& left, const TextPart& right) noexcept {
  if (left.length != right.length) return false;
  return left.length == 0 || std::memcmp(left.units, right.units, left.length * sizeof(RX::UniChar)) == 0;
}

}  // namespace

int CUnicodeString::Find(const RX::UniChar* text, unsigned int from) const noexcept {
  if (text == nullptr) return -1;
  const TextPart wanted = PartOf(text);
  for (std::size_t index = from; index + wanted.length <= m_length; ++index) {
    if (AreEqual({m_text + index, wanted.length}, wanted)) return static_cast<int>(index);
  }
  return -1;
}

int CUnicodeString::Find(RX::UniChar unit, unsigned int from) const noexcept {
  for (unsigned int index = from; index < m_length; ++index) {
    if (m_text[index] == unit) return static_cast<int>(index);
  }
  return -1;
}

bool CUnicodeString::EndsWith(const RX::UniChar* text) const noexcept {
  if (text == nullptr) return false;
  const TextPart end = PartOf(text);
  return end.length <= m_length && AreEqual({m_text + (m_length - end.length), end.length}, end);
}

bool operator==(const CUnicodeString& left, const CUnicodeString& right) noexcept {
  return AreEqual({left, left.GetLength()}, {right, right.GetLength()});
}

bool operator==(const CUnicodeString& left, const RX::UniChar* right) noexcept {
  return AreEqual({left, left.GetLength()}, PartOf(right));
}

bool operator==(const RX::UniChar* left, const CUnicodeString& right) noexcept { return right == left; }

}  // namespace mirel::base
