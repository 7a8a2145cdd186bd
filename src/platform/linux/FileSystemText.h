// Texts of the file system, which are bytes, as texts of the library.
#pragma once

#include <mirel/base/UnicodeString.h>

namespace torvan::platform {

// Converts UTF-8 to UTF-16; null for null and for bytes that are not UTF-8. Throws CMemoryException.
mirel::base::CUnicodeString FromUtf8(const char* text);

}  // namespace torvan::platform
