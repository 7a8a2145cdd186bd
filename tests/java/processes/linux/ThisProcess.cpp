#include "java/processes/ThisProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "java/processes/linux/StatFile.h"

namespace tests {

namespace fs = std::filesystem;

namespace {

std::size_t Entries(const char* folder) {
  const fs::directory_iterator entries(folder);
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

// The kernel lists a thread for a moment after it has been joined; its flags say that it ends.
bool Ends(const fs::path& thread) {
  constexpr unsigned long Exiting = 4;
  const auto fields = StatOf(thread);
  return fields.size() < 7 || (std::stoul(fields[6]) & Exiting) != 0;
}

}  // namespace

std::vector<std::string> StatOf(const fs::path& folder) {
  std::ostringstream text;
  text << std::ifstream(folder / "stat").rdbuf();
  const std::size_t name = text.str().rfind(')');
  if (name == std::string::npos) return {};
  std::istringstream fields(text.str().substr(name + 1));
  return {std::istream_iterator<std::string>(fields), {}};
}

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
  // What comes from files is left out: of that the kernel drops what it likes, and reads it again.
  std::size_t kilobytes = 0;
  std::ifstream lines("/proc/self/status");
  for (std::string name; lines >> name;) {
    std::size_t value = 0;
    if ((name == "RssAnon:" || name == "VmSwap:") && lines >> value) kilobytes += value;
  }
  return kilobytes * 1024;
}

fs::path OwnProgram() { return fs::read_symlink("/proc/self/exe"); }
unsigned long OwnId() { return static_cast<unsigned long>(getpid()); }

OwnStreamToFile::OwnStreamToFile(int stream, const fs::path& file)
    : m_stream(stream), m_before(fcntl(stream, F_DUPFD_CLOEXEC, 3)) {
  const int opened = open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  dup2(opened, stream);
  close(opened);
}

OwnStreamToFile::~OwnStreamToFile() {
  dup2(static_cast<int>(m_before), m_stream);
  close(static_cast<int>(m_before));
}

void UseTemporaryFolder(const fs::path& folder) { setenv("TMPDIR", folder.c_str(), 1); }

bool Runs(unsigned long id) {
  const auto fields = StatOf("/proc/" + std::to_string(id));
  return !fields.empty() && fields[0] != "Z" && fields[0] != "X";
}

void KillOther(unsigned long id) { kill(static_cast<pid_t>(id), SIGKILL); }

}  // namespace tests
