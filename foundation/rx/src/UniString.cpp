#include <rx/UniString.h>

#include <rx/Memory.h>
#include <rx/OutOfMemoryException.h>

#include <cstring>

namespace RX {
namespace {

UniChar* CopyOf(const UniChar* text) {
  if (text == nullptr) return nullptr;
  const std::size_t size = (ucslen(text) + 1) * sizeof(UniChar);
  void* const copy = RX_malloc(size);
  if (copy == nullptr) throw OutOfMemoryException();
  return static_cast<UniChar*>(std::memcpy(copy, text, size));
}

}  // namespace

UniString::UniString(const UniChar* text) : m_text(CopyOf(text)) {}

UniString::UniString(const UniString& other) : m_text(CopyOf(other.m_text)) {}

UniString::~UniString() { RX_free(m_text); }

UniString& UniString::operator=(const UniString& other) {
  UniChar* const copy = CopyOf(other.m_text);
  RX_free(m_text);
  m_text = copy;
  return *this;
}

}  // namespace RX
