// Wide text to ASCII.
#pragma once

#include <rx/Text.h>

#include <cstdint>
#include <cstring>

#if defined(__SSE2__) || defined(_M_X64)
#define TORVAN_COPIES_EIGHT
#include <emmintrin.h>
#endif

namespace torvan::jni {

// Units that are copied at once, and what has been seen in them.
class CAsciiFour {
 public:
  static constexpr std::size_t size = 4;

  void Copy(const RX::UniChar* from, char* to) noexcept {
    std::uint64_t units;
    std::memcpy(&units, from, sizeof units);
    m_seen |= units;
    units |= units >> 8;
    const auto bytes = static_cast<std::uint32_t>((units & 0xFFFF) | (units >> 16 & 0xFFFF0000));
    std::memcpy(to, &bytes, sizeof bytes);
  }
  bool IsAscii() const noexcept { return (m_seen & 0xFF80FF80FF80FF80) == 0; }

 private:
  std::uint64_t m_seen = 0;
};

#if defined(TORVAN_COPIES_EIGHT)
class CAsciiEight {
 public:
  static constexpr std::size_t size = 8;

  void Copy(const RX::UniChar* from, char* to) noexcept {
    const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
    m_seen = _mm_or_si128(m_seen, units);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(to), _mm_packus_epi16(units, units));
  }
  bool IsAscii() const noexcept {
    const __m128i others = _mm_and_si128(m_seen, _mm_set1_epi16(static_cast<short>(0xFF80)));
    return _mm_movemask_epi8(_mm_cmpeq_epi16(others, _mm_setzero_si128())) == 0xFFFF;
  }

 private:
  __m128i m_seen = _mm_setzero_si128();
};
#else
using CAsciiEight = CAsciiFour;
#endif

// Copies `count` units, which are at least as many as are copied at once. Some of the last are copied twice.
template <typename Units>
bool CopyAsciiBy(const RX::UniChar* from, std::size_t count, char* to) noexcept {
  Units units;
  const std::size_t last = count - Units::size;
  for (std::size_t done = 0; done < last; done += Units::size) units.Copy(from + done, to + done);
  units.Copy(from + last, to + last);
  return units.IsAscii();
}

// Copies `count` units as a byte each. Returns whether all were ASCII; what is copied is of no use if not.
inline bool CopyAscii(const RX::UniChar* from, std::size_t count, char* to) noexcept {
  if (count >= CAsciiEight::size) return CopyAsciiBy<CAsciiEight>(from, count, to);
  if (count >= CAsciiFour::size) return CopyAsciiBy<CAsciiFour>(from, count, to);
  unsigned int seen = 0;
  for (std::size_t i = 0; i < count; ++i) {
    seen |= from[i];
    to[i] = static_cast<char>(from[i]);
  }
  return seen < 0x80;
}

}  // namespace torvan::jni
