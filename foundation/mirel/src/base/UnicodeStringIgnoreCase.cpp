// Comparing texts and ignoring case.
#include <mirel/base/UnicodeString.h>

namespace mirel::base {
namespace {

// Every `step`-th unit from `first` to `last` is a capital letter; its small letter is `distance` units higher.
struct Capitals {
  char32_t first;
  char32_t last;
  char32_t step;
  int distance;
};

// clang-format off
constexpr Capitals AllCapitals[] = {
    {0x0041, 0x005A, 1,   32},  // ASCII
    {0x00C0, 0x00D6, 1,   32},  // Latin-1
    {0x00D8, 0x00DE, 1,   32},
    {0x0100, 0x012E, 2,    1},  // Latin Extended-A
    {0x0132, 0x0136, 2,    1},
    {0x0139, 0x0147, 2,    1},
    {0x014A, 0x0176, 2,    1},
    {0x0178, 0x0178, 1, -121},
    {0x0179, 0x017D, 2,    1},
    {0x0370, 0x0372, 2,    1},  // Greek
    {0x0376, 0x0376, 1,    1},
    {0x037F, 0x037F, 1,  116},
    {0x0386, 0x0386, 1,   38},
    {0x0388, 0x038A, 1,   37},
    {0x038C, 0x038C, 1,   64},
    {0x038E, 0x038F, 1,   63},
    {0x0391, 0x03A1, 1,   32},
    {0x03A3, 0x03AB, 1,   32},
    {0x03CF, 0x03CF, 1,    8},
    {0x03D8, 0x03EE, 2,    1},
    {0x03F7, 0x03F7, 1,    1},
    {0x03F9, 0x03F9, 1,   -7},
    {0x03FA, 0x03FA, 1,    1},
    {0x03FD, 0x03FF, 1, -130},
    {0x0400, 0x040F, 1,   80},  // Cyrillic
    {0x0410, 0x042F, 1,   32},
    {0x0460, 0x0480, 2,    1},
    {0x048A, 0x04BE, 2,    1},
    {0x04C0, 0x04C0, 1,   15},
    {0x04C1, 0x04CD, 2,    1},
    {0x04D0, 0x04FE, 2,    1},
};
// clang-format on

int SmallLetterOf(RX::UniChar unit) noexcept {
  const char32_t letter = static_cast<char32_t>(unit);
  for (const Capitals& row : AllCapitals) {
    if (letter < row.first) break;
    if (letter <= row.last && (letter - row.first) % row.step == 0) return static_cast<int>(letter) + row.distance;
  }
  return static_cast<int>(letter);
}

}  // namespace

int CUnicodeString::CompareIgnoreCase(const CUnicodeString& other) const noexcept {
  const unsigned int common = m_length < other.m_length ? m_length : other.m_length;
  for (unsigned int i = 0; i < common; ++i) {
    const int difference = SmallLetterOf(m_text[i]) - SmallLetterOf(other.m_text[i]);
    if (difference != 0) return difference;
  }
  return m_length < other.m_length ? -1 : m_length > other.m_length ? 1 : 0;
}

}  // namespace mirel::base
