// Checking wide text that a host passes.
#pragma once

#include <rx/Text.h>

namespace torvan {

inline bool IsEmpty(const RX::UniChar* text) noexcept { return text == nullptr || *text == 0; }

}  // namespace torvan
