#include "fakes/WideText.h"

namespace tests {
namespace {

void AppendUtf8(std::string& out, char32_t point) {
  if (point < 0x80) {
    out += static_cast<char>(point);
    return;
  }
  const int followers = point < 0x800 ? 1 : point < 0x10000 ? 2 : 3;
  const unsigned lead = followers == 1 ? 0xC0 : followers == 2 ? 0xE0 : 0xF0;
  out += static_cast<char>(lead | (point >> (6 * followers)));
  for (int left = followers - 1; left >= 0; --left) {
    out += static_cast<char>(0x80 | ((point >> (6 * left)) & 0x3F));
  }
}

bool IsHighSurrogate(RX::UniChar unit) { return (unit & 0xFC00) == 0xD800; }
bool IsLowSurrogate(RX::UniChar unit) { return (unit & 0xFC00) == 0xDC00; }

}  // namespace

std::string Narrow(const RX::UniChar* text) {
  if (text == nullptr) return "(null)";
  std::string out;
  while (*text != 0) {
    char32_t point = *text++;
    if (IsHighSurrogate(static_cast<RX::UniChar>(point)) && IsLowSurrogate(*text)) {
      point = 0x10000 + ((point & 0x3FF) << 10) + (static_cast<char32_t>(*text++) & 0x3FF);
    }
    AppendUtf8(out, point);
  }
  return out;
}

WideText Widen(const std::string& text) {
  WideText out;
  for (std::size_t at = 0; at < text.size();) {
    const auto lead = static_cast<unsigned char>(text[at++]);
    const int followers = lead < 0x80 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
    char32_t point = followers == 0 ? lead : lead & (0x3Fu >> followers);
    for (int left = followers; left > 0 && at < text.size(); --left) {
      point = (point << 6) | (static_cast<unsigned char>(text[at++]) & 0x3Fu);
    }
    if (point >= 0x10000) {
      out += static_cast<RX::UniChar>(0xD800 + ((point - 0x10000) >> 10));
      point = 0xDC00 + (point & 0x3FF);
    }
    out += static_cast<RX::UniChar>(point);
  }
  return out;
}

}  // namespace tests
