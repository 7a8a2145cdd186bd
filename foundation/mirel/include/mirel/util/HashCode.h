// Hash functions for table keys.
#pragma once

#include <mirel/base/UnicodeString.h>

namespace mirel::util {

// Returns the hash of a text: for units u1 ... un the sum of ui * 31^(n-i), in 32-bit arithmetic. Null hashes to 0, as
// empty text does.
MIREL_API int GetCUnicodeStringHashCode(const base::CUnicodeString& text);

}  // namespace mirel::util
