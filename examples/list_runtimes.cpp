// Lists the Java runtimes of this machine, and what looks like one but cannot be used by this program.
//
//   list_runtimes [FOLDER]
//
// With a folder, only what is in it. The runtime that a host gets by default is marked with a star. Exit code 1: there
// is no runtime; 2: the command line was wrong.

#include <torvan/Java.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#if defined(_WIN32)
#include <windows.h>
#endif

namespace java = torvan::java;

namespace {

constexpr int ExitNone = 1;
constexpr int ExitUsage = 2;

using Row = std::array<std::string, 6>;

// In UTF-8 on every system.
std::string ToText(const std::filesystem::path& path) {
  const auto text = path.u8string();
  return std::string(text.begin(), text.end());
}

// Columns on a terminal: continuation bytes have none.
std::size_t WidthOf(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(), [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }));
}

void PrintTable(const std::vector<Row>& rows) {
  std::array<std::size_t, std::tuple_size_v<Row>> widths{};
  for (const Row& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], WidthOf(row[i]));
  }
  for (const Row& row : rows) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) line += row[i] + std::string(widths[i] - WidthOf(row[i]) + 2, ' ');
    line.erase(line.find_last_not_of(' ') + 1);
    std::printf("%s\n", line.c_str());
  }
}

Row RowOf(const java::Runtime& runtime, bool isDefault) {
  return {(isDefault ? "* " : "  ") + runtime.Version().ToString(), runtime.IsJdk() ? "JDK" : "JRE", runtime.Cpu(),
          runtime.Vendor().empty() ? "-" : runtime.Vendor(),        ToText(runtime.Home()),          runtime.FoundIn()};
}

int List(const java::Runtimes& runtimes) {
  if (runtimes.found.empty()) {
    std::printf("No Java runtime was found.\n");
  } else {
    std::vector<Row> rows{{"  VERSION", "KIND", "CPU", "VENDOR", "HOME", "FOUND IN"}};
    for (const java::Runtime& runtime : runtimes.found) rows.push_back(RowOf(runtime, rows.size() == 1));
    PrintTable(rows);
  }
  if (!runtimes.refused.empty()) std::printf("\nRefused:\n");
  for (const java::RefusedRuntime& refused : runtimes.refused) {
    std::printf("  %s\n    %s (%s)\n", ToText(refused.Home()).c_str(), refused.Reason().c_str(),
                refused.FoundIn().c_str());
  }
  return runtimes.found.empty() ? ExitNone : 0;
}

template <typename Unit>
int Run(int count, Unit** arguments) try {
  if (count == 1) return List(java::FindRuntimes());
  if (count == 2 && arguments[1][0] != '-') return List(java::FindRuntimes(std::filesystem::path(arguments[1])));
  std::fprintf(stderr, "usage: list_runtimes [FOLDER]\n");
  return ExitUsage;
} catch (const std::exception& error) {
  std::fprintf(stderr, "list_runtimes: %s\n", error.what());
  return ExitUsage;
}

}  // namespace

#if defined(_WIN32)
int wmain(int count, wchar_t** arguments) {
  SetConsoleOutputCP(CP_UTF8);
  return Run(count, arguments);
}
#else
int main(int count, char** arguments) { return Run(count, arguments); }
#endif
