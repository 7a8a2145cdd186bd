#include <mirel/util/HashCode.h>

namespace mirel::util {

int GetCUnicodeStringHashCode(const base::CUnicodeString& text) {
  const RX::UniChar* const units = text;
  unsigned int hash = 0;
  for (unsigned int i = 0; i < text.GetLength(); ++i) hash = hash * 31 + static_cast<unsigned int>(units[i]);
  return static_cast<int>(hash);
}

}  // namespace mirel::util
