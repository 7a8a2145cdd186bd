#include "jvmlauncher/Resources.h"

#if defined(_WIN32)
#include <windows.h>
// Behind <windows.h>, which it needs.
#include <psapi.h>

#include <cstdint>
#else
#include <unistd.h>

#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#endif

namespace tests {

#if defined(_WIN32)

namespace {

// Where the system does not count handles (Wine answers 0), the number of a new one tells: the lowest free one is
// given.
long CountHandles() {
  DWORD count = 0;
  if (GetProcessHandleCount(GetCurrentProcess(), &count) && count != 0) return static_cast<long>(count);
  const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  CloseHandle(event);
  return static_cast<long>(reinterpret_cast<std::intptr_t>(event) / 4);
}

}  // namespace

Resources MeasureResources() {
  PROCESS_MEMORY_COUNTERS counters{};
  counters.cb = sizeof(counters);
  GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters));
  return {CountHandles(), 0, static_cast<long>(counters.PagefileUsage / 1024)};
}

#else

namespace fs = std::filesystem;

namespace {

// The fields of a process's stat file behind its name, which may hold anything.
bool IsZombieOfOurs(const fs::path& process) {
  std::ifstream file(process / "stat");
  const std::string stat{std::istreambuf_iterator<char>(file), {}};
  const std::size_t behindName = stat.rfind(')');
  const std::string zombie = ") Z " + std::to_string(getpid()) + " ";
  return behindName != std::string::npos && stat.compare(behindName, zombie.size(), zombie) == 0;
}

}  // namespace

Resources MeasureResources() {
  Resources resources{0, 0, 0};
  for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
    static_cast<void>(entry);
    ++resources.handles;
  }
  for (const auto& entry : fs::directory_iterator("/proc")) {
    const bool isProcess = std::isdigit(static_cast<unsigned char>(entry.path().filename().string().front())) != 0;
    if (isProcess && IsZombieOfOurs(entry.path())) ++resources.zombies;
  }
#if !defined(__SANITIZE_ADDRESS__)
  // The address sanitizer keeps what was freed, and finds leaks by itself.
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.compare(0, 7, "VmData:") == 0) resources.memory = std::stol(line.substr(7));
  }
#endif
  return resources;
}

#endif

}  // namespace tests
