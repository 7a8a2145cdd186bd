#include "java/OptionChecks.h"

#include <torvan/java/Failure.h>

#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>
#include <string_view>

#include "java/PathText.h"
#include "java/VmLibrary.h"

namespace torvan::java::detail {

namespace fs = std::filesystem;

namespace {

bool StartsWith(std::string_view text, std::string_view start) { return text.substr(0, start.size()) == start; }

[[noreturn]] void RefuseOption(unsigned int line, const std::string& option, const std::string& reason) {
  throw StartFailure("java/OptionChecks", line, "The option " + option + " cannot be used: " + reason);
}

// What the VM looks for in its own folders first, and then where the system finds libraries.
bool HasLibrary(const std::string& name, const fs::path& home) {
  const std::string file = LibraryFileName(name);
  std::error_code error;
  for (const char* folder : {"lib", "bin", "jre/lib/amd64", "jre/bin"}) {
    if (!home.empty() && fs::exists(home / folder / file, error)) return true;
  }
  std::string reason;
  return LoadLibraryAt(ToPath(file), reason) != nullptr;
}

// A size as the VM reads it, or nothing.
std::optional<unsigned long long> SizeOf(std::string_view text) {
  const bool isHexadecimal = StartsWith(text, "0x") || StartsWith(text, "0X");
  if (isHexadecimal) text.remove_prefix(2);
  const unsigned base = isHexadecimal ? 16 : 10;
  const std::string_view digits = std::string_view("0123456789abcdefABCDEF").substr(0, isHexadecimal ? 22 : 10);
  unsigned long long size = 0;
  std::size_t i = 0;
  for (; i < text.size(); ++i) {
    const std::size_t place = digits.find(text[i]);
    if (place == std::string_view::npos) break;
    if (size > (~0ull - base) / base) return std::nullopt;
    size = size * base + (place < 16 ? place : place - 6);
  }
  if (i == 0 || text.size() > i + 1) return std::nullopt;
  if (i == text.size()) return size;
  constexpr std::string_view Units = "kmgt";
  const std::size_t unit = Units.find(static_cast<char>(text[i] | 0x20));
  if (unit == std::string_view::npos) return std::nullopt;
  const unsigned shift = 10 * (static_cast<unsigned>(unit) + 1);
  if (size > ~0ull >> shift) return std::nullopt;
  return size << shift;
}

struct HeapSize {
  const std::string* option = nullptr;
  unsigned long long bytes = 0;
};

// The last of the options that set a size counts.
HeapSize LastSize(const std::vector<std::string>& options, std::initializer_list<std::string_view> names) {
  HeapSize found;
  for (const std::string& option : options) {
    for (const std::string_view name : names) {
      if (!StartsWith(option, name)) continue;
      const auto bytes = SizeOf(std::string_view(option).substr(name.size()));
      if (!bytes.has_value()) {
        RefuseOption(__LINE__, option, "a size is a number of bytes, or a number with k, m, g or t");
      }
      found = {&option, *bytes};
    }
  }
  return found;
}

// The line MODULES="java.base java.logging ..." of the runtime's release file; nothing where there is none.
std::optional<std::string> ModulesOf(const fs::path& home) {
  std::ifstream file(home / "release");
  for (std::string line; std::getline(file, line);) {
    if (StartsWith(line, "MODULES=\"")) return " " + line.substr(9, line.rfind('"') - 9) + " ";
  }
  return std::nullopt;
}

}  // namespace

void CheckAgents(const std::vector<std::string>& options, const fs::path& home) {
  constexpr std::string_view Files[] = {"-javaagent:", "-agentpath:"};
  constexpr std::string_view Library = "-agentlib:";
  std::error_code error;
  for (const std::string& option : options) {
    const auto agent = [&](std::string_view start) {
      const std::string_view rest = std::string_view(option).substr(start.size());
      return std::string(rest.substr(0, rest.find('=')));
    };
    for (const std::string_view start : Files) {
      if (StartsWith(option, start) && !fs::exists(ToPath(agent(start)), error)) {
        RefuseOption(__LINE__, option, "there is no file " + agent(start));
      }
    }
    if (StartsWith(option, Library) && !HasLibrary(agent(Library), home)) {
      RefuseOption(__LINE__, option, "no library " + LibraryFileName(agent(Library)) + " was found");
    }
  }
}

void CheckHeap(const std::vector<std::string>& options) {
  constexpr unsigned long long Least = 2ULL * 1024 * 1024;
  const HeapSize initial = LastSize(options, {"-Xms", "-XX:InitialHeapSize="});
  const HeapSize maximum = LastSize(options, {"-Xmx", "-XX:MaxHeapSize="});
  if (maximum.option != nullptr) {
    if (maximum.bytes < Least) RefuseOption(__LINE__, *maximum.option, "the heap has 2 MiB at least");
    if (!CanReserve(maximum.bytes)) {
      RefuseOption(__LINE__, *maximum.option, "the system has no address space of that size");
    }
  }
  // 0 lets the VM choose.
  if (initial.option == nullptr || initial.bytes == 0) return;
  if (maximum.option != nullptr && initial.bytes > maximum.bytes) {
    RefuseOption(__LINE__, *initial.option, "it is more than " + *maximum.option);
  }
  if (!CanReserve(initial.bytes)) {
    RefuseOption(__LINE__, *initial.option, "the system has no address space of that size");
  }
}

void CheckCollectors(const std::vector<std::string>& options) {
  constexpr std::string_view Names[] = {"UseSerialGC", "UseParallelGC",   "UseG1GC",     "UseConcMarkSweepGC",
                                        "UseZGC",      "UseShenandoahGC", "UseEpsilonGC"};
  const std::string* first = nullptr;
  for (const std::string_view name : Names) {
    const std::string* last = nullptr;  // the last sign counts
    for (const std::string& option : options) {
      if (StartsWith(option, "-XX:") && option.size() == name.size() + 5 && option.substr(5) == name) last = &option;
    }
    if (last == nullptr || (*last)[4] != '+') continue;
    const std::string reason = "a Java VM has one garbage collector, and ";
    if (first != nullptr) RefuseOption(__LINE__, *last, reason + *first + " is given, too");
    first = last;
  }
}

void CheckModules(const std::vector<std::string>& options, const fs::path& home) {
  constexpr std::string_view Start = "--add-modules=";
  const auto modules = home.empty() ? std::nullopt : ModulesOf(home);
  if (!modules.has_value()) return;
  for (const std::string& option : options) {
    if (StartsWith(option, "--module-path=")) return;
  }
  for (const std::string& option : options) {
    if (!StartsWith(option, Start)) continue;
    std::istringstream names(option.substr(Start.size()));
    for (std::string name; std::getline(names, name, ',');) {
      if (StartsWith(name, "ALL-") || modules->find(" " + name + " ") != std::string::npos) continue;
      RefuseOption(__LINE__, option, "the runtime has no module " + name + ", and no module path is given");
    }
  }
}

}  // namespace torvan::java::detail
