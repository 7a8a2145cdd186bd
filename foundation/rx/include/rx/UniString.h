// The root library's UTF-16 text.
#pragma once

#include <rx/Text.h>

namespace RX {

// A UTF-16 text that owns its units, as the root libraries return it.
// Not safe for use by two threads at once while one of them writes.
class RX_API UniString {
 public:
  // Constructs a null text.
  UniString() noexcept : m_text(nullptr) {}
  // Copies zero-terminated text; null stays null. Throws OutOfMemoryException.
  UniString(const UniChar* text);
  // Copies another text. Throws OutOfMemoryException.
  UniString(const UniString& other);
  ~UniString();

  // Copies another text. Throws OutOfMemoryException and is then unchanged.
  UniString& operator=(const UniString& other);

  // Returns the zero-terminated units, or null; valid until the text changes or is destroyed.
  operator const UniChar*() const noexcept { return m_text; }

 private:
  UniChar* m_text;
};

}  // namespace RX
