// The process of the test: what it holds, and who it is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>

namespace tests {

// What a test must leave as it was. Descriptors are handles on Windows.
struct Held {
  std::size_t descriptors;
  std::size_t threads;   // those that end are not counted
  std::size_t children;  // zombies included; none on Windows, where nothing has to be reaped
};
Held HeldNow();

// Memory that only this process has, in bytes, paged out or not.
std::size_t MemoryNow();

// The file of the test program.
std::filesystem::path OwnProgram();
unsigned long OwnId();

// Leads the own output (1) or error output (2) of this process to a new file while it lives.
class OwnStreamToFile {
 public:
  OwnStreamToFile(int stream, const std::filesystem::path& file);
  ~OwnStreamToFile();
  OwnStreamToFile(const OwnStreamToFile&) = delete;
  OwnStreamToFile& operator=(const OwnStreamToFile&) = delete;

 private:
  const int m_stream;
  std::intptr_t m_before;  // a copy of the descriptor, or the handle
};

// Where temporary files go from now on.
void UseTemporaryFolder(const std::filesystem::path& folder);

// Returns whether a process runs; false for one that has ended and waits to be reaped.
bool Runs(unsigned long id);
// Kills a process that is not ours to wait for.
void KillOther(unsigned long id);

}  // namespace tests
