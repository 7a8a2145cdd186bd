#include "java/runtimes/ReleaseFile.h"

#include <cstddef>

namespace torvan::java::detail {
namespace {

constexpr std::string_view Blanks = " \t\r\f\v";

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(Blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(Blanks) + 1 - first);
}

std::string_view Unquote(std::string_view text) {
  const bool isQuoted =
      text.size() >= 2 && text.front() == text.back() && (text.front() == '"' || text.front() == '\'');
  return isQuoted ? text.substr(1, text.size() - 2) : text;
}

bool IsContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

// The length of the UTF-8 character at the front of the text, or 0 where there is none.
std::size_t CharacterLength(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  if (lead < 0x80) return 1;
  const std::size_t length = lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
  if (length == 0 || text.size() < length) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if (!IsContinuation(text[i])) return 0;
  }
  const auto second = static_cast<unsigned char>(text[1]);
  const bool isOverlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
  const bool isSurrogate = lead == 0xED && second >= 0xA0;
  const bool isTooLarge = lead == 0xF4 && second >= 0x90;
  return isOverlong || isSurrogate || isTooLarge ? 0 : length;
}

// Of the character at the front of the text: one of ASCII, or of the 32 that follow it.
bool IsControl(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  return lead < 0x20 || lead == 0x7F || (lead == 0xC2 && static_cast<unsigned char>(text[1]) < 0xA0);
}

// Such texts are shown to people, and the file may hold anything.
std::string Cleaned(std::string_view text) {
  constexpr std::size_t MostShown = 200;
  text = text.substr(0, MostShown);
  std::string clean;
  while (!text.empty()) {
    const std::size_t length = CharacterLength(text);
    if (length == 0) {
      clean += '?';
    } else if (!IsControl(text)) {
      clean += text.substr(0, length);
    }
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return clean;
}

bool HaveSameNumbers(const Version& a, const Version& b) { return a.Fits(b) || b.Fits(a); }

}  // namespace

Release ReadRelease(std::string_view file) {
  std::string_view version;
  std::string_view runtimeVersion;
  std::string_view vendor;
  std::string_view libc;
  constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
  if (file.substr(0, ByteOrderMark.size()) == ByteOrderMark) file.remove_prefix(ByteOrderMark.size());
  while (!file.empty()) {
    const std::string_view line = file.substr(0, file.find('\n'));
    file.remove_prefix(line.size() == file.size() ? line.size() : line.size() + 1);
    const std::size_t sign = line.find('=');
    if (sign == std::string_view::npos) continue;
    const std::string_view key = Trim(line.substr(0, sign));
    const std::string_view value = Unquote(Trim(line.substr(sign + 1)));
    if (key == "JAVA_VERSION") version = value;
    if (key == "JAVA_RUNTIME_VERSION") runtimeVersion = value;
    if (key == "IMPLEMENTOR") vendor = value;
    if (key == "LIBC") libc = value;
  }

  Release release;
  release.vendor = Cleaned(vendor);
  release.libc = Cleaned(libc);
  release.versionText = Cleaned(version);
  if (release.versionText.empty()) release.versionText = Cleaned(runtimeVersion);
  release.version = Version::TryParse(version);
  // JAVA_VERSION is numbers alone. The other key, in files from about version 16 on, tells early access and the build;
  // but some vendors put their own numbering there.
  const std::optional<Version> full = Version::TryParse(runtimeVersion);
  if (full && (!release.version || HaveSameNumbers(*full, *release.version))) release.version = full;
  return release;
}

}  // namespace torvan::java::detail
