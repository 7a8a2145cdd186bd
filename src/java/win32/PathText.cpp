#include "java/PathText.h"

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace torvan::java::detail {

// What is not well-formed becomes U+FFFD in both directions.

std::string ToText(const std::filesystem::path& path) {
  const std::wstring units = path.wstring();
  const int size = static_cast<int>(units.size());
  std::string text(units.size() * 3, '\0');  // no unit takes more bytes
  const int length =
      WideCharToMultiByte(CP_UTF8, 0, units.data(), size, text.data(), static_cast<int>(text.size()), nullptr, nullptr);
  text.resize(static_cast<std::size_t>(length));
  return text;
}

std::filesystem::path ToPath(const std::string& text) {
  const int size = static_cast<int>(text.size());
  std::wstring units(text.size(), L'\0');
  const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), size, units.data(), static_cast<int>(units.size()));
  units.resize(static_cast<std::size_t>(length));
  return units;
}

}  // namespace torvan::java::detail
