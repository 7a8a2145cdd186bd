#include <torvan/java/detail/Utf.h>

#include <torvan/java/Failure.h>

#include <cstdint>
#include <cstring>

namespace torvan::java::detail {

namespace {

constexpr char32_t Replacement = 0xFFFD;
constexpr std::uint64_t EachByte = 0x0101010101010101;
constexpr std::uint64_t EachHigh = 0x8080808080808080;

std::uint64_t Load(const void* from) noexcept {
  std::uint64_t word;
  std::memcpy(&word, from, sizeof word);
  return word;
}

// Four units of the machine's order, each below 0x80, to four bytes.
std::uint32_t Pack(std::uint64_t units) noexcept {
  units = (units | units >> 8) & 0x0000FFFF0000FFFF;
  return static_cast<std::uint32_t>(units | units >> 16);
}

// The reverse of Pack.
std::uint64_t Unpack(std::uint32_t bytes) noexcept {
  std::uint64_t units = bytes;
  units = (units | units << 16) & 0x0000FFFF0000FFFF;
  return (units | units << 8) & 0x00FF00FF00FF00FF;
}

constexpr bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
constexpr bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

char Byte(char32_t byte) noexcept { return static_cast<char>(byte); }
char Tail(char32_t bits) noexcept { return static_cast<char>(0x80 | (bits & 0x3F)); }

char* Write(char32_t character, char* out) noexcept {
  if (character < 0x80) {
    out[0] = Byte(character);
    return out + 1;
  }
  if (character < 0x800) {
    out[0] = Byte(0xC0 | character >> 6);
    out[1] = Tail(character);
    return out + 2;
  }
  if (character < 0x10000) {
    out[0] = Byte(0xE0 | character >> 12);
    out[1] = Tail(character >> 6);
    out[2] = Tail(character);
    return out + 3;
  }
  out[0] = Byte(0xF0 | character >> 18);
  out[1] = Tail(character >> 12);
  out[2] = Tail(character >> 6);
  out[3] = Tail(character);
  return out + 4;
}

[[noreturn]] void ThrowInvalid(std::size_t position) {
  throw InvalidUtf8("java/Utf", __LINE__, "invalid UTF-8 at byte " + std::to_string(position));
}

// Reads the sequence at `at` and moves `at` past it. The least second byte rules out overlong forms, the greatest
// surrogates and what is beyond U+10FFFF.
char32_t ReadSequence(std::string_view text, std::size_t& at) {
  const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char first = byte(at);
  std::size_t more = 0;
  unsigned char least = 0x80;
  unsigned char greatest = 0xBF;
  if (first >= 0xC2 && first < 0xE0) {
    more = 1;
  } else if (first >= 0xE0 && first < 0xF0) {
    more = 2;
    if (first == 0xE0) least = 0xA0;
    if (first == 0xED) greatest = 0x9F;
  } else if (first >= 0xF0 && first < 0xF5) {
    more = 3;
    if (first == 0xF0) least = 0x90;
    if (first == 0xF4) greatest = 0x8F;
  } else {
    ThrowInvalid(at);
  }
  char32_t character = first & (0x3F >> more);
  for (std::size_t i = at + 1; i <= at + more; ++i) {
    if (i == text.size() || byte(i) < least || byte(i) > greatest) ThrowInvalid(at);
    character = character << 6 | (byte(i) & 0x3F);
    least = 0x80;
    greatest = 0xBF;
  }
  at += more + 1;
  return character;
}

}  // namespace

char* WriteUtf8(const char16_t* units, std::size_t size, char* out) noexcept {
  std::size_t at = 0;
  while (at < size) {
    // Eight at a time while they are ASCII, which most text is.
    for (; size - at >= 8; at += 8, out += 8) {
      const std::uint64_t low = Load(units + at);
      const std::uint64_t high = Load(units + at + 4);
      if (((low | high) & 0xFF80FF80FF80FF80) != 0) break;
      const std::uint64_t bytes = Pack(low) | static_cast<std::uint64_t>(Pack(high)) << 32;
      std::memcpy(out, &bytes, sizeof bytes);
    }
    // The next eight one by one, then the fast way is tried again.
    for (const std::size_t stop = size - at > 8 ? at + 8 : size; at < stop;) {
      char32_t character = units[at++];
      if (IsHighSurrogate(character) && at < size && IsLowSurrogate(units[at])) {
        character = 0x10000 + ((character - 0xD800) << 10) + (units[at++] - 0xDC00u);
      } else if (IsHighSurrogate(character) || IsLowSurrogate(character)) {
        character = Replacement;
      }
      out = Write(character, out);
    }
  }
  return out;
}

std::string ToUtf8(std::u16string_view units) {
  std::string text;
  constexpr std::size_t AtOnce = 1024;
  char buffer[3 * AtOnce];
  text.reserve(units.size());
  while (!units.empty()) {
    std::size_t size = units.size() < AtOnce ? units.size() : AtOnce;
    if (size < units.size() && IsHighSurrogate(units[size - 1])) --size;  // a pair stays together
    text.append(buffer, WriteUtf8(units.data(), size, buffer));
    units.remove_prefix(size);
  }
  return text;
}

std::string ToModifiedUtf8(std::u16string_view units) {
  std::string text;
  for (const char16_t unit : units) {
    char buffer[3];
    if (unit == 0) {
      text += "\xC0\x80";
    } else {
      text.append(buffer, Write(unit, buffer));
    }
  }
  return text;
}

std::u16string ToUtf16(std::string_view text) {
  std::u16string units(text.size(), u'\0');  // never more units than bytes
  units.resize(static_cast<std::size_t>(WriteUtf16(text, units.data()) - units.data()));
  return units;
}

char16_t* WriteUtf16(std::string_view text, char16_t* out) {
  std::size_t at = 0;
  while (at < text.size()) {
    for (; text.size() - at >= 8; at += 8, out += 8) {
      const std::uint64_t bytes = Load(text.data() + at);
      if ((bytes & EachHigh) != 0) break;
      const std::uint64_t wide[] = {Unpack(static_cast<std::uint32_t>(bytes)),
                                    Unpack(static_cast<std::uint32_t>(bytes >> 32))};
      std::memcpy(out, wide, sizeof wide);
    }
    for (const std::size_t stop = text.size() - at > 8 ? at + 8 : text.size(); at < stop;) {
      const auto first = static_cast<unsigned char>(text[at]);
      if (first < 0x80) {
        *out++ = first;
        ++at;
        continue;
      }
      const char32_t character = ReadSequence(text, at);
      if (character < 0x10000) {
        *out++ = static_cast<char16_t>(character);
      } else {
        *out++ = static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10));
        *out++ = static_cast<char16_t>(0xDC00 + (character & 0x3FF));
      }
    }
  }
  return out;
}

bool IsPlainAscii(std::string_view text) noexcept {
  std::size_t at = 0;
  // A byte is bad when its high bit is set, or when taking one from it borrows: zero.
  for (; text.size() - at >= 8; at += 8) {
    const std::uint64_t bytes = Load(text.data() + at);
    if (((bytes | (bytes - EachByte)) & EachHigh) != 0) return false;
  }
  for (; at < text.size(); ++at) {
    if (static_cast<signed char>(text[at]) <= 0) return false;
  }
  return true;
}

}  // namespace torvan::java::detail
