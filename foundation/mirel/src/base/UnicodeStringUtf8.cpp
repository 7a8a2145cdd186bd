// Texts as UTF-8.
#include <mirel/base/UnicodeString.h>

#include <climits>

#include "TextBlock.h"

namespace mirel::base {
namespace {

constexpr char32_t Replacement = 0xFFFD;

bool IsHighSurrogate(RX::UniChar unit) noexcept { return (unit & 0xFC00) == 0xD800; }
bool IsLowSurrogate(RX::UniChar unit) noexcept { return (unit & 0xFC00) == 0xDC00; }

// Reads the next character and advances; a lone surrogate reads as the replacement character.
char32_t NextCharacter(const RX::UniChar*& units, const RX::UniChar* end) noexcept {
  const char32_t unit = static_cast<char32_t>(*units);
  ++units;
  if (IsHighSurrogate(static_cast<RX::UniChar>(unit)) && units != end && IsLowSurrogate(*units)) {
    const char32_t low = static_cast<char32_t>(*units);
    ++units;
    return 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
  }
  return unit >= 0xD800 && unit <= 0xDFFF ? Replacement : unit;
}

// One character in UTF-8.
struct Sequence {
  char bytes[4];
  std::size_t length;

  explicit Sequence(char32_t character) noexcept
      : length(character < 0x80      ? 1
               : character < 0x800   ? 2
               : character < 0x10000 ? 3
                                     : 4) {
    static constexpr unsigned char leads[] = {0x00, 0x00, 0xC0, 0xE0, 0xF0};
    for (std::size_t i = length - 1; i != 0; --i) {
      bytes[i] = static_cast<char>(0x80 | (character & 0x3F));
      character >>= 6;
    }
    bytes[0] = static_cast<char>(leads[length] | character);
  }
};

// Writes the whole characters that fit, and a zero. Returns the bytes that the whole text and its zero need.
std::size_t Encode(const TextPart& text, char* buffer, std::size_t size) noexcept {
  std::size_t needed = 0;
  std::size_t written = 0;
  const RX::UniChar* units = text.units;
  const RX::UniChar* const end = units + text.length;
  while (units != end) {
    const Sequence sequence(NextCharacter(units, end));
    // Once a character does not fit, `written` stays below `needed`, and no later character is written.
    if (written == needed && written + sequence.length < size) {
      std::memcpy(buffer + written, sequence.bytes, sequence.length);
      written += sequence.length;
    }
    needed += sequence.length;
  }
  if (size != 0) buffer[written] = 0;
  return needed + 1;
}

}  // namespace

CString CUnicodeString::ToUTF8() const {
  CString utf8;
  if (m_text == nullptr) return utf8;
  const std::size_t size = Encode({m_text, m_length}, nullptr, 0);
  utf8.m_text = static_cast<char*>(RX_malloc(size));
  if (utf8.m_text == nullptr) _ThrowMemoryException("mirel/base/UnicodeStringUtf8", __LINE__);
  Encode({m_text, m_length}, utf8.m_text, size);
  return utf8;
}

int CUnicodeString::ToUTF8(char* buffer, int size) const noexcept {
  const std::size_t room = buffer == nullptr || size < 0 ? 0 : static_cast<std::size_t>(size);
  const std::size_t needed = Encode({m_text, m_length}, buffer, room);
  return needed < INT_MAX ? static_cast<int>(needed) : INT_MAX;
}

}  // namespace mirel::base
