#include "java/processes/ThisProcess.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

namespace tests {

namespace fs = std::filesystem;

namespace {

std::size_t Entries(const char* folder) {
  const fs::directory_iterator entries(folder);
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

}  // namespace

Held HeldNow() {
  std::size_t children = 0;
  for (const auto& thread : fs::directory_iterator("/proc/self/task")) {
    std::ifstream ids(thread.path() / "children");
    children += static_cast<std::size_t>(std::distance(std::istream_iterator<std::string>(ids), {}));
  }
  return {Entries("/proc/self/fd"), Entries("/proc/self/task"), children};
}

std::size_t MemoryNow() {
  std::size_t total = 0;
  std::size_t resident = 0;
  std::ifstream("/proc/self/statm") >> total >> resident;
  return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

fs::path OwnProgram() { return fs::read_symlink("/proc/self/exe"); }
unsigned long OwnId() { return static_cast<unsigned long>(getpid()); }

void UseTemporaryFolder(const fs::path& folder) { setenv("TMPDIR", folder.c_str(), 1); }

bool Runs(unsigned long id) {
  std::ostringstream text;
  text << std::ifstream("/proc/" + std::to_string(id) + "/stat").rdbuf();
  const std::size_t name = text.str().rfind(')');
  return name != std::string::npos && text.str()[name + 2] != 'Z' && text.str()[name + 2] != 'X';
}

}  // namespace tests
