// Texts as the tests compare and print them.
#pragma once

#include <mirel/base/UnicodeString.h>

#include <string>

namespace tests {

using WideText = std::basic_string<RX::UniChar>;

// All units, zeros included, up to the length; a terminating zero has to follow them. Null is "(null)".
inline WideText UnitsOf(const mirel::base::CUnicodeString& text) {
  const RX::UniChar* const units = text;
  if (units == nullptr) return text.GetLength() == 0 ? RX_TEXT("(null)") : RX_TEXT("(null with a length)");
  if (units[text.GetLength()] != 0) return RX_TEXT("(not terminated)");
  return WideText(units, text.GetLength());
}

inline WideText Wide(const RX::UniChar* text) { return text; }

}  // namespace tests
