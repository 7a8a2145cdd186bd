// Text under construction.
#pragma once

#include <mirel/base/UnicodeString.h>

namespace mirel::base {

// A UTF-16 buffer that grows as text is appended. Lengths and capacities are UTF-16 units.
// Appending throws CMemoryException (no message) when memory runs out and changes nothing then.
class MIREL_API CUnicodeStringBuffer : public CBase {
 public:
  // Constructs an empty buffer with room for `capacity` units. Throws CMemoryException.
  explicit CUnicodeStringBuffer(unsigned int capacity);
  ~CUnicodeStringBuffer();
  CUnicodeStringBuffer(const CUnicodeStringBuffer&) = delete;
  CUnicodeStringBuffer& operator=(const CUnicodeStringBuffer&) = delete;

  CUnicodeStringBuffer& operator+=(RX::UniChar unit);
  // Appends zero-terminated text; null appends nothing.
  CUnicodeStringBuffer& operator+=(const RX::UniChar* text);
  CUnicodeStringBuffer& operator+=(const CUnicodeString& text);

  unsigned int GetLength() const noexcept { return m_length; }
  // Tells whether the buffer ends with this unit.
  bool EndsWith(RX::UniChar unit) const noexcept;
  // Truncates the text to `length` units; a larger length changes nothing.
  void Truncate(unsigned int length) noexcept;

  // Returns the text; empty, not null, when nothing was appended. Throws CMemoryException.
  CUnicodeString ToString() const;

 private:
  void Append(const TextPart& part);

  RX::UniChar* m_text;
  unsigned int m_length;
  unsigned int m_capacity;
};

}  // namespace mirel::base
