// 8-bit text.
#pragma once

#include <mirel/base/Base.h>
#include <rx/Memory.h>

namespace mirel::base {

// A zero-terminated text of 8-bit bytes, owned by the object.
class MIREL_API CString : public CBase {
 public:
  // Makes an empty text whose conversion gives null.
  CString() noexcept : m_text(nullptr) {}
  // Copies a zero-terminated text; null stays null. Throws CMemoryException.
  CString(const char* text);
  CString(const CString& other);
  // Inline, because most texts of names on their way to Java are never given any bytes.
  ~CString() {
    if (m_text != nullptr) RX_free(m_text);
  }
  // Copies another text. Throws CMemoryException and then keeps what it held.
  CString& operator=(const CString& other);

  // The bytes, or null for a text never given any; valid until the text changes or ends.
  operator const char*() const noexcept { return m_text; }

 private:
  friend class CUnicodeString;

  char* m_text;
};

}  // namespace mirel::base
