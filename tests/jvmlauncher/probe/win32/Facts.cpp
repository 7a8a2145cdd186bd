#include "jvmlauncher/probe/Facts.h"

#include <windows.h>
// After <windows.h>, which it needs.
#include <shellapi.h>

static std::string Utf8(const wchar_t* text) {
  std::string utf8(static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr)),
                   '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8.data(), static_cast<int>(utf8.size()), nullptr, nullptr);
  utf8.pop_back();
  return utf8;
}

std::vector<std::string> Facts(int, char**) {
  std::vector<std::string> facts = {Utf8(GetCommandLineW())};
  int count = 0;
  wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  for (int i = 1; i < count; ++i) facts.push_back(Utf8(arguments[i]));
  LocalFree(arguments);
  return facts;
}
