#include "java/processes/ThisProcess.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace tests {

namespace fs = std::filesystem;

namespace {

std::size_t Entries(const char* folder) {
  const fs::directory_iterator entries(folder);
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

// The fields of a stat file that follow the name, of which the first is the state; none if there is no such file.
std::vector<std::string> StatOf(const fs::path& folder) {
  std::ostringstream text;
  text << std::ifstream(folder / "stat").rdbuf();
  const std::size_t name = text.str().rfind(')');
  if (name == std::string::npos) return {};
  std::istringstream fields(text.str().substr(name + 1));
  return {std::istream_iterator<std::string>(fields), {}};
}

// The kernel lists a thread for a moment after it has been joined; its flags say that it ends.
bool Ends(const fs::path& thread) {
  constexpr unsigned long Exiting = 4;
  const auto fields = StatOf(thread);
  return fields.size() < 7 || (std::stoul(fields[6]) & Exiting) != 0;
}

}  // namespace

Held HeldNow() {
  Held held{Entries("/proc/self/fd"), 0, 0};
  for (const auto& thread : fs::directory_iterator("/proc/self/task")) {
    if (!Ends(thread)) ++held.threads;
    std::ifstream ids(thread.path() / "children");
    held.children += static_cast<std::size_t>(std::distance(std::istream_iterator<std::string>(ids), {}));
  }
  return held;
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
  const auto fields = StatOf("/proc/" + std::to_string(id));
  return !fields.empty() && fields[0] != "Z" && fields[0] != "X";
}

}  // namespace tests
