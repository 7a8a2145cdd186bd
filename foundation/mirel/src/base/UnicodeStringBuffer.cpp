#include <mirel/base/UnicodeStringBuffer.h>

#include "TextBlock.h"

namespace mirel::base {

CUnicodeStringBuffer::CUnicodeStringBuffer(unsigned int capacity)
    : m_text(AllocateUnits(capacity, "mirel/base/UnicodeStringBuffer", __LINE__)), m_length(0), m_capacity(capacity) {}

CUnicodeStringBuffer::~CUnicodeStringBuffer() { RX_free(m_text); }

CUnicodeStringBuffer& CUnicodeStringBuffer::operator+=(RX::UniChar unit) {
  Append({&unit, 1});
  return *this;
}

CUnicodeStringBuffer& CUnicodeStringBuffer::operator+=(const RX::UniChar* text) {
  Append(PartOf(text));
  return *this;
}

CUnicodeStringBuffer& CUnicodeStringBuffer::operator+=(const CUnicodeString& text) {
  Append({text, text.GetLength()});
  return *this;
}

void CUnicodeStringBuffer::Append(const TextPart& part) {
  const std::size_t needed = m_length + part.length;
  if (needed > m_capacity) {
    const std::size_t doubled = std::size_t{m_capacity} * 2;
    const std::size_t capacity = needed > doubled ? needed : doubled;
    RX::UniChar* const text = AllocateUnits(capacity, "mirel/base/UnicodeStringBuffer", __LINE__);
    CopyUnits(text, {m_text, m_length});
    RX_free(m_text);
    m_text = text;
    m_capacity = static_cast<unsigned int>(capacity);
  }
  CopyUnits(m_text + m_length, part);
  m_length = static_cast<unsigned int>(needed);
}

bool CUnicodeStringBuffer::EndsWith(RX::UniChar unit) const noexcept {
  return m_length != 0 && m_text[m_length - 1] == unit;
}

void CUnicodeStringBuffer::Truncate(unsigned int length) noexcept {
  if (length < m_length) m_length = length;
}

CUnicodeString CUnicodeStringBuffer::ToString() const { return CUnicodeString(m_text, m_length); }

}  // namespace mirel::base
