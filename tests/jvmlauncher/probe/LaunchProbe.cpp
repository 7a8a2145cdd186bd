// A program that stands in for Java: it writes down how it was started, waits and ends as its environment says.
//
// LAUNCH_PROBE_REPORT        the file to write: on Windows the raw command line, then every argument behind the
//                            program's name, each UTF-8 and ended by a zero
// LAUNCH_PROBE_MILLISECONDS  how long to wait after that; an empty file with ".done" behind the report's name follows
// LAUNCH_PROBE_SIGNAL        the signal to raise then, if there is one
// LAUNCH_PROBE_EXIT          the exit code

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#if defined(_WIN32)
#include <windows.h>
// Behind <windows.h>, which it needs.
#include <shellapi.h>
#endif

namespace {

#if defined(_WIN32)
std::string Utf8(const wchar_t* text) {
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
#else
std::vector<std::string> Facts(int count, char** arguments) { return {arguments + 1, arguments + count}; }
#endif

long Number(const char* name) {
  const char* const text = std::getenv(name);
  return text != nullptr ? std::strtol(text, nullptr, 10) : 0;
}

}  // namespace

int main(int count, char** arguments) {
  const char* const report = std::getenv("LAUNCH_PROBE_REPORT");
  if (report != nullptr) {
    // Under another name first: whoever sees the report sees all of it.
    const std::string unfinished = std::string(report) + ".unfinished";
    std::ofstream file(unfinished, std::ios::binary);
    for (const std::string& fact : Facts(count, arguments)) file << fact << '\0';
    file.close();
    std::filesystem::rename(unfinished, report);
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(Number("LAUNCH_PROBE_MILLISECONDS")));
  if (report != nullptr) std::ofstream(std::string(report) + ".done");
  if (Number("LAUNCH_PROBE_SIGNAL") != 0) std::raise(static_cast<int>(Number("LAUNCH_PROBE_SIGNAL")));
  return static_cast<int>(Number("LAUNCH_PROBE_EXIT"));
}
