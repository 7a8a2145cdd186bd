#include <mirel/base/String.h>

#include <rx/Memory.h>

#include <cstring>

namespace mirel::base {
namespace {

char* CopyOf(const char* text) {
  if (text == nullptr) return nullptr;
  const std::size_t size = std::strlen(text) + 1;
  void* const copy = RX_malloc(size);
  if (copy == nullptr) CBase::_ThrowMemoryException("mirel/base/String", __LINE__);
  return static_cast<char*>(std::memcpy(copy, text, size));
}

}  // namespace

CString::CString(const char* text) : m_text(CopyOf(text)) {}

CString::CString(const CString& other) : m_text(CopyOf(other.m_text)) {}

CString& CString::operator=(const CString& other) {
  char* const copy = CopyOf(other.m_text);
  RX_free(m_text);
  m_text = copy;
  return *this;
}

}  // namespace mirel::base
