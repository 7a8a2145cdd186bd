#include <mirel/util/UnicodeStringVector.h>

namespace mirel::util {

CUnicodeStringVector::CUnicodeStringVector(unsigned int initialCapacity, unsigned int increment)
    : m_texts(initialCapacity, increment) {}

bool operator==(const CUnicodeStringVector& left, const CUnicodeStringVector& right) {
  if (left.GetSize() != right.GetSize()) return false;
  for (unsigned int i = 0; i < left.GetSize(); ++i) {
    if (left[i] != right[i]) return false;
  }
  return true;
}

}  // namespace mirel::util
