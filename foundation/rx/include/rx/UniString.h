// The root library's UTF-16 text.
#pragma once

#include <rx/Text.h>

namespace RX {

// A UTF-16 text of its own, as the root libraries hand it out.
// Each object owns its units. Not safe for use by two threads at once while one of them writes.
class RX_API UniString {
 public:
  // Makes an empty text whose conversion gives null.
  UniString() noexcept : m_text(nullptr) {}
  // Copies zero-terminated text; null stays null. Throws OutOfMemoryException.
  UniString(const UniChar* text);
  // Copies another text. Throws OutOfMemoryException.
  UniString(const UniString& other);
  ~UniString();

  // Copies another text. Throws OutOfMemoryException and then keeps what it held.
  UniString& operator=(const UniString& other);

  // The zero-terminated units, or null; valid until the text changes or ends.
  operator const UniChar*() const noexcept { return m_text; }

 private:
  UniChar* m_text;
};

}  // namespace RX
