// Conversions between the tests' UTF-8 and the library's UTF-16.
#pragma once

#include <rx/Text.h>

#include <string>

namespace tests {

using WideText = std::basic_string<RX::UniChar>;

// Null is "(null)", so that a log shows it.
std::string Narrow(const RX::UniChar* text);
WideText Widen(const std::string& text);

}  // namespace tests
