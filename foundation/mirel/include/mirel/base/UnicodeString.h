// UTF-16 text.
#pragma once

#include <mirel/base/Base.h>
#include <mirel/base/String.h>
#include <rx/Text.h>

namespace mirel::base {

struct TextPart;

// A zero-terminated UTF-16 text, owned by the object. Indices and lengths are UTF-16 units, 32-bit unsigned.
// A text made from nothing converts to null, and one made from an empty text converts to an empty text; both have
// length 0 and are equal. An object may be moved in memory byte by byte. Every operation that makes text throws
// CMemoryException (no message) when memory runs out; the object it was called on then keeps its text.
class MIREL_API CUnicodeString : public CBase {
 public:
  CUnicodeString() noexcept : m_text(nullptr), m_length(0) {}
  // Copies zero-terminated text; null stays null.
  CUnicodeString(const RX::UniChar* text);
  // Copies `length` units, which may hold zeros.
  CUnicodeString(const RX::UniChar* text, unsigned int length);
  CUnicodeString(const CUnicodeString& other);
  ~CUnicodeString();
  CUnicodeString& operator=(const CUnicodeString& other);

  // The units, or null for a text made from nothing; valid until the text changes or ends.
  operator const RX::UniChar*() const noexcept { return m_text; }
  unsigned int GetLength() const noexcept { return m_length; }

  // Gives the index of the first occurrence at or after `from`, or -1. Null is not found; an empty text is found at
  // `from` when that is not behind the end.
  int Find(const RX::UniChar* text, unsigned int from = 0) const noexcept;
  int Find(RX::UniChar unit, unsigned int from = 0) const noexcept;
  // Gives the units from `start` to the end; empty, not null, when `start` is at or behind the end.
  CUnicodeString Mid(unsigned int start) const;
  // Gives at most `count` units from `start`.
  CUnicodeString Mid(unsigned int start, unsigned int count) const;
  // Puts text before the unit at `index`, or at the end when `index` is behind it. Null adds nothing.
  void Insert(unsigned int index, const RX::UniChar* text);
  // Tells whether the text ends with `text`. An empty text ends every text; null ends none.
  bool EndsWith(const RX::UniChar* text) const noexcept;
  // Compares by units, letters of a pair counting as equal; the result is below, equal to or above 0.
  // Pairs are the ASCII letters and the simple one-to-one pairs of Latin-1, Latin Extended-A, Greek and Cyrillic. Not
  // paired are letters without a partner of one unit in these blocks (the German sharp s, the dotted capital I).
  int CompareIgnoreCase(const CUnicodeString& other) const noexcept;

  // Gives the text as UTF-8. Null stays null.
  // A surrogate pair becomes one sequence of 4 bytes; a surrogate without its partner becomes U+FFFD.
  CString ToUTF8() const;
  // Writes the text as UTF-8 into a buffer of `size` bytes and gives the number of bytes the whole text needs, its
  // terminating zero included.
  // A null buffer asks for that number only (`size` is not looked at). Never writes behind the buffer: what does not
  // fit is cut at a character border and ended with a zero. Null text counts as empty.
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
