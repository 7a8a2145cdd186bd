#include <rx/Text.h>

#include <cstdint>

// Not under a sanitizer, which watches each unit.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define RX_IS_WATCHED
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || __has_feature(memory_sanitizer)
#define RX_IS_WATCHED
#endif
#endif
#if (defined(__SSE2__) || defined(_M_X64)) && !defined(RX_IS_WATCHED)
#define RX_SCANS_BLOCKS
#include <emmintrin.h>
#if defined(_MSC_VER) && !defined(__clang__)
#include <intrin.h>
#endif
#endif

namespace RX {

#if defined(RX_SCANS_BLOCKS)
namespace {

// One bit for each byte of the block's units that are zero.
unsigned int ZerosIn(const __m128i* block) noexcept {
  return static_cast<unsigned int>(_mm_movemask_epi8(_mm_cmpeq_epi16(_mm_load_si128(block), _mm_setzero_si128())));
}

// The number of the lowest bit that is set, of which there is one.
std::size_t FirstOf(unsigned int bits) noexcept {
#if defined(_MSC_VER) && !defined(__clang__)
  unsigned long first = 0;
  _BitScanForward(&first, bits);
  return first;
#else
  return static_cast<std::size_t>(__builtin_ctz(bits));
#endif
}

}  // namespace
#endif

std::size_t ucslen(const UniChar* text) noexcept {
#if defined(RX_SCANS_BLOCKS)
  // An aligned block never crosses a page, so what it has before and after the text can be read. The units of a text in
  // a packed record may be at odd addresses, and are then none of a block's.
  const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(text);
  if (address % sizeof(UniChar) == 0) {
    const std::size_t before = address % sizeof(__m128i);
    const __m128i* block = reinterpret_cast<const __m128i*>(address - before);
    unsigned int zeros = ZerosIn(block) >> before;
    if (zeros != 0) return FirstOf(zeros) / sizeof(UniChar);
    while ((zeros = ZerosIn(++block)) == 0) continue;
    return (reinterpret_cast<std::uintptr_t>(block) - address + FirstOf(zeros)) / sizeof(UniChar);
  }
#endif
  const UniChar* end = text;
  while (*end != 0) ++end;
  return static_cast<std::size_t>(end - text);
}

}  // namespace RX
