// An array of texts.
#pragma once

#include <mirel/base/UnicodeString.h>
#include <mirel/util/Vector.h>

namespace mirel::util {

// Keeps texts in the order in which they were added.
// Throws CMemoryException when memory runs out. Adding then changes nothing; assigning changes nothing when there is no
// room for the texts, and otherwise ends with those copied so far.
class MIREL_API CUnicodeStringVector : public base::CBase {
 public:
  // Reserves room for `initialCapacity` texts; grows in steps of `increment` (0 means 5).
  explicit CUnicodeStringVector(unsigned int initialCapacity = 10, unsigned int increment = 5);

  unsigned int GetSize() const noexcept { return m_texts.GetSize(); }
  // Returns the text at `index`. Throws CNoSuchElementException (no message) when `index` is not below the size.
  const base::CUnicodeString& operator[](unsigned int index) const { return m_texts[index]; }
  // Appends a copy of a text.
  void Add(const base::CUnicodeString& text) { m_texts.Add(text); }

 private:
  RX_NOT_EXPORTED_BEGIN
  CVector<base::CUnicodeString> m_texts;
  RX_NOT_EXPORTED_END
};

// Vectors are equal when they hold equal texts in the same order.
MIREL_API bool operator==(const CUnicodeStringVector& left, const CUnicodeStringVector& right);

}  // namespace mirel::util
