// Blocks of UTF-16 text under the root allocator.
#pragma once

#include <mirel/base/Base.h>
#include <rx/Memory.h>
#include <rx/Text.h>

#include <cstring>

namespace mirel::base {

// A run of UTF-16 units; a null pointer is an empty run.
struct TextPart {
  const RX::UniChar* units;
  std::size_t length;
};

inline TextPart PartOf(const RX::UniChar* text) noexcept { return {text, text == nullptr ? 0 : RX::ucslen(text)}; }

inline RX::UniChar* CopyUnits(RX::UniChar* to, const TextPart& part) noexcept {
  if (part.length != 0) std::memcpy(to, part.units, part.length * sizeof(RX::UniChar));
  return to + part.length;
}

// Allocates a block for `length` units and a terminating zero. Throws CMemoryException with the given place, also when
// the length exceeds 32 bits.
inline RX::UniChar* AllocateUnits(std::size_t length, const char* file, unsigned int line) {
  constexpr std::size_t longest = 0xFFFFFFFE;
  void* const block = length > longest ? nullptr : RX_malloc((length + 1) * sizeof(RX::UniChar));
  if (block == nullptr) CBase::_ThrowMemoryException(file, line);
  return static_cast<RX::UniChar*>(block);
}

}  // namespace mirel::base
