#include "jvmlauncher/Resources.h"

#include <unistd.h>

#include <cctype>
#include <filesystem>
#include <fstream>
#include <string>

namespace tests {

namespace fs = std::filesystem;

namespace {

// Whether the process is a zombie of ours. Its stat file is read from after the name on, which may contain anything.
bool IsZombieOfOurs(const fs::path& process) {
  std::ifstream file(process / "stat");
  std::string stat;
  std::getline(file, stat, '\0');  // fails, and does not throw, for a process that ends meanwhile
  const std::size_t afterName = stat.rfind(')');
  const std::string zombie = ") Z " + std::to_string(getpid()) + " ";
  return afterName != std::string::npos && stat.compare(afterName, zombie.size(), zombie) == 0;
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
  // The address sanitizer does not reuse freed memory at once, and finds leaks by itself.
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.compare(0, 7, "VmData:") == 0) resources.memory = std::stol(line.substr(7));
  }
#endif
  return resources;
}

bool MakePipe(int (&ends)[2]) { return pipe(ends) == 0; }

void CloseEnd(int end) { close(end); }

bool IsAtItsEnd(int readingEnd) {
  char byte = 0;
  return read(readingEnd, &byte, 1) == 0;
}

}  // namespace tests
