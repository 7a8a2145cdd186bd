// 8-bit text.
#pragma once

#include <mirel/base/Base.h>
#include <rx/Memory.h>

namespace mirel::base {

// A zero-terminated text of 8-bit bytes, owned by the object.
class MIREL_API CString : public CBase {
 public:
  // Constructs a null text.
  CString() noexcept : m_text(nullptr) {}
  // Copies a zero-terminated text; null stays null. Throws CMemoryException.
  CString(const char* text);
  CString(const CString& other);
  // Inline, because most of these objects are created for names on their way to Java and never hold any bytes.
  ~CString() {
    if (m_text != nullptr) RX_free(m_text);
  }
  // Copies another text. Throws CMemoryException and is then unchanged.
  CString& operator=(const CString& other);

  // Returns the bytes, or null for a null text; valid until the text changes or is destroyed.
  operator const char*() const noexcept { return m_text; }

 private:
  friend class CUnicodeString;

  char* m_text;
};

}  // namespace mirel::base
