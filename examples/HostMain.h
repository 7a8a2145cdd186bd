// What the example programs share: arguments as UTF-16 text on every system, and text for people to read.
#pragma once

#include <torvan/Torvan.h>

#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

using Text = std::basic_string<RX::UniChar>;

// Run is the program: it gets the arguments without the program's name and returns the exit code.
int Run(const std::vector<Text>& arguments);

// Something that the user can put right; the text says how.
struct UserError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

inline std::string ToUtf8(const mirel::base::CUnicodeString& text) {
  const mirel::base::CString utf8 = text.ToUTF8();
  return static_cast<const char*>(utf8) != nullptr ? static_cast<const char*>(utf8) : "";
}
inline std::string ToUtf8(const Text& text) { return ToUtf8(mirel::base::CUnicodeString(text.c_str())); }

// Bytes that are not UTF-8 become U+FFFD.
inline Text FromUtf8(const std::string& bytes) {
  Text text;
  for (std::size_t i = 0; i < bytes.size();) {
    const auto lead = static_cast<unsigned char>(bytes[i++]);
    const int trailing = lead < 0x80 ? 0 : lead >= 0xC2 && lead < 0xE0 ? 1 : lead >= 0xE0 && lead < 0xF0 ? 2 : 3;
    char32_t point = trailing == 0 ? lead : lead & (0x3Fu >> trailing);
    int read = 0;
    while (read < trailing && i < bytes.size() && (static_cast<unsigned char>(bytes[i]) & 0xC0) == 0x80) {
      point = point << 6 | (static_cast<unsigned char>(bytes[i++]) & 0x3Fu);
      ++read;
    }
    const bool wellFormed = (lead < 0x80 || (lead >= 0xC2 && lead < 0xF5)) && read == trailing &&
                            (trailing != 2 || point >= 0x800) && (trailing != 3 || point >= 0x10000) &&
                            point <= 0x10FFFF && (point < 0xD800 || point > 0xDFFF);
    if (!wellFormed) point = 0xFFFD;
    if (point >= 0x10000) {
      text += static_cast<RX::UniChar>(0xD7C0 + (point >> 10));
      point = 0xDC00 + (point & 0x3FF);
    }
    text += static_cast<RX::UniChar>(point);
  }
  return text;
}

#if defined(_WIN32)
int wmain(int count, wchar_t** arguments) { return Run(std::vector<Text>(arguments + 1, arguments + count)); }
#else
int main(int count, char** arguments) {
  std::vector<Text> texts;
  for (int i = 1; i < count; ++i) texts.push_back(FromUtf8(arguments[i]));
  return Run(texts);
}
#endif
