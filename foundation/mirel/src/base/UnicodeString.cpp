#include <mirel/base/UnicodeString.h>

#include <utility>

#include "TextBlock.h"

namespace mirel::base {
namespace {

constexpr TextPart Nothing = {nullptr, 0};

RX::UniChar* CopyOf(const TextPart& text) {
  RX::UniChar* const units = AllocateUnits(text.length, "mirel/base/UnicodeString", __LINE__);
  *CopyUnits(units, text) = 0;
  return units;
}

}  // namespace

CUnicodeString::CUnicodeString(const TextPart& first, const TextPart& second, const TextPart& third)
    : m_text(AllocateUnits(first.length + second.length + third.length, "mirel/base/UnicodeString", __LINE__)),
      m_length(static_cast<unsigned int>(first.length + second.length + third.length)) {
  *CopyUnits(CopyUnits(CopyUnits(m_text, first), second), third) = 0;
}

CUnicodeString::CUnicodeString(const RX::UniChar* text) : CUnicodeString() {
  if (text == nullptr) return;
  const TextPart whole = PartOf(text);
  m_text = CopyOf(whole);
  m_length = static_cast<unsigned int>(whole.length);
}

CUnicodeString::CUnicodeString(const RX::UniChar* text, unsigned int length) : CUnicodeString() {
  if (text == nullptr) return;
  m_text = CopyOf({text, length});
  m_length = length;
}

CUnicodeString::CUnicodeString(const CUnicodeString& other) : CUnicodeString(other.m_text, other.m_length) {}

CUnicodeString::~CUnicodeString() { RX_free(m_text); }

CUnicodeString& CUnicodeString::operator=(const CUnicodeString& other) {
  CUnicodeString(other).Swap(*this);
  return *this;
}

void CUnicodeString::Swap(CUnicodeString& other) noexcept {
  std::swap(m_text, other.m_text);
  std::swap(m_length, other.m_length);
}

CUnicodeString CUnicodeString::Mid(unsigned int start) const { return Mid(start, m_length); }

CUnicodeString CUnicodeString::Mid(unsigned int start, unsigned int count) const {
  if (start >= m_length) return CUnicodeString(Nothing, Nothing, Nothing);
  const unsigned int left = m_length - start;
  return CUnicodeString(m_text + start, count < left ? count : left);
}

void CUnicodeString::Insert(unsigned int index, const RX::UniChar* text) {
  if (text == nullptr) return;
  const unsigned int before = index < m_length ? index : m_length;
  // Joined before anything is freed: the text may be a part of this one.
  CUnicodeString({m_text, before}, PartOf(text), {m_text + before, m_length - before}).Swap(*this);
}

CUnicodeString operator+(const CUnicodeString& left, const CUnicodeString& right) {
  return CUnicodeString({left.m_text, left.m_length}, {right.m_text, right.m_length}, Nothing);
}

CUnicodeString operator+(const CUnicodeString& left, const RX::UniChar* right) {
  return CUnicodeString({left.m_text, left.m_length}, PartOf(right), Nothing);
}

CUnicodeString operator+(const RX::UniChar* left, const CUnicodeString& right) {
  return CUnicodeString(PartOf(left), {right.m_text, right.m_length}, Nothing);
}

}  // namespace mirel::base
