#include "platform/linux/FileSystemText.h"

#include <mirel/base/UnicodeStringBuffer.h>

#include <cstring>

namespace torvan::platform {
namespace {

// One row for each length of a sequence: the bits of its first byte, and the smallest character that it may encode.
struct Sequence {
  unsigned char mask;
  unsigned char lead;
  char32_t least;
};

// clang-format off
constexpr Sequence Sequences[] = {
    {0x80, 0x00, 0x0},
    {0xE0, 0xC0, 0x80},
    {0xF0, 0xE0, 0x800},
    {0xF8, 0xF0, 0x10000},
};
// clang-format on

constexpr char32_t Malformed = 0xFFFFFFFF;

// Reads the character at `text` and advances past it.
char32_t ReadCharacter(const char*& text) {
  const auto first = static_cast<unsigned char>(*text++);
  int followers = 0;
  for (const Sequence& sequence : Sequences) {
    if ((first & sequence.mask) != sequence.lead) {
      ++followers;
      continue;
    }
    char32_t character = first & static_cast<unsigned char>(~sequence.mask);
    for (; followers > 0; --followers) {
      const auto next = static_cast<unsigned char>(*text);
      if ((next & 0xC0) != 0x80) return Malformed;
      character = (character << 6) | (next & 0x3F);
      ++text;
    }
    const bool isSurrogate = character >= 0xD800 && character < 0xE000;
    return character < sequence.least || character > 0x10FFFF || isSurrogate ? Malformed : character;
  }
  return Malformed;
}

}  // namespace

mirel::base::CUnicodeString FromUtf8(const char* text) {
  if (text == nullptr) return {};
  mirel::base::CUnicodeStringBuffer buffer(static_cast<unsigned int>(std::strlen(text)));
  while (*text != 0) {
    const char32_t character = ReadCharacter(text);
    if (character == Malformed) return {};
    if (character < 0x10000) {
      buffer += static_cast<RX::UniChar>(character);
    } else {
      buffer += static_cast<RX::UniChar>(0xD800 + ((character - 0x10000) >> 10));
      buffer += static_cast<RX::UniChar>(0xDC00 + (character & 0x3FF));
    }
  }
  return buffer.ToString();
}

}  // namespace torvan::platform
