// UTF-16 text.
#pragma once

#include <mirel/base/Base.h>
#include <mirel/base/String.h>
#include <rx/Text.h>

namespace mirel::base {

struct TextPart;

// A zero-terminated UTF-16 text, owned by the object. Indices and lengths are UTF-16 units, 32-bit unsigned.
// A text constructed from null converts to null, and one from empty text converts to empty text; both have length 0 and
// are equal. Objects may be moved in memory byte by byte. Every operation that makes text throws CMemoryException (no
// message) when memory runs out; the object it was called on is then unchanged.
class MIREL_API CUnicodeString : public CBase {
 public:
  CUnicodeString() noexcept : m_text(nullptr), m_length(0) {}
  // Copies zero-terminated text; null stays null.
  CUnicodeString(const RX::UniChar* text);
  // Copies `length` units, zeros included.
  CUnicodeString(const RX::UniChar* text, unsigned int length);
  CUnicodeString(const CUnicodeString& other);
  ~CUnicodeString();
  CUnicodeString& operator=(const CUnicodeString& other);

  // Returns the units, or null for a null text; valid until the text changes or is destroyed.
  operator const RX::UniChar*() const noexcept { return m_text; }
  unsigned int GetLength() const noexcept { return m_length; }

  // Returns the index of the first occurrence at or after `from`, or -1. Null is never found; an empty text is found at
  // `from` unless that is past the end.
  int Find(const RX::UniChar* text, unsigned int from = 0) const noexcept;
  int Find(RX::UniChar unit, unsigned int from = 0) const noexcept;
  // Returns the units from `start` to the end; empty, not null, when `start` is at the end or past it.
  CUnicodeString Mid(unsigned int start) const;
  // Returns at most `count` units from `start`.
  CUnicodeString Mid(unsigned int start, unsigned int count) const;
  // Inserts text before the unit at `index`, or appends it when `index` is past the end. Null inserts nothing.
  void Insert(unsigned int index, const RX::UniChar* text);
  // Tells whether the text ends with `text`. An empty text ends every text; null ends none.
  bool EndsWith(const RX::UniChar* text) const noexcept;
  // Compares by units, ignoring case; the result is below, equal to or above 0.
  // Case is known for ASCII and for the one-to-one letter pairs of Latin-1, Latin Extended-A, Greek and Cyrillic.
  // Letters without a one-unit partner in these blocks (the German sharp s, the dotted capital I) equal only
  // themselves.
  int CompareIgnoreCase(const CUnicodeString& other) const noexcept;

  // Returns the text as UTF-8. Null stays null.
  // A surrogate pair becomes one sequence of 4 bytes; a lone surrogate becomes U+FFFD.
  CString ToUTF8() const;
  // Writes the text as UTF-8 into a buffer of `size` bytes and returns the bytes that the whole text needs, its
  // terminating zero included.
  // A null buffer only asks for that number; `size` is then ignored. Never writes past the buffer: what does not fit is
  // cut at a character border and terminated. A null text counts as empty.
  int ToUTF8(char* buffer, int size) const noexcept;

 private:
  friend MIREL_API CUnicodeString operator+(const CUnicodeString& left, const CUnicodeString& right);
  friend MIREL_API CUnicodeString operator+(const CUnicodeString& left, const RX::UniChar* right);
  friend MIREL_API CUnicodeString operator+(const RX::UniChar* left, const CUnicodeString& right);

  // Joins three runs of units, each possibly empty.
  CUnicodeString(const TextPart& first, const TextPart& second, const TextPart& third);

  void Swap(CUnicodeString& other) noexcept;

  RX::UniChar* m_text;
  unsigned int m_length;
};

// Texts are equal when their units are; null text equals empty text.
MIREL_API bool operator==(const CUnicodeString& left, const CUnicodeString& right) noexcept;
MIREL_API bool operator==(const CUnicodeString& left, const RX::UniChar* right) noexcept;
MIREL_API bool operator==(const RX::UniChar* left, const CUnicodeString& right) noexcept;
inline bool operator!=(const CUnicodeString& left, const CUnicodeString& right) noexcept { return !(left == right); }
inline bool operator!=(const CUnicodeString& left, const RX::UniChar* right) noexcept { return !(left == right); }
inline bool operator!=(const RX::UniChar* left, const CUnicodeString& right) noexcept { return !(left == right); }

// Joins two texts; the result is never null. Throws CMemoryException.
MIREL_API CUnicodeString operator+(const CUnicodeString& left, const CUnicodeString& right);
MIREL_API CUnicodeString operator+(const CUnicodeString& left, const RX::UniChar* right);
MIREL_API CUnicodeString operator+(const RX::UniChar* left, const CUnicodeString& right);

}  // namespace mirel::base
