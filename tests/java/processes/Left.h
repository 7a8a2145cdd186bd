// What a test may leave behind in this process: nothing.
#pragma once

#include <cstddef>

namespace tests {

// Of this process, now. Descriptors are handles on Windows.
struct Held {
  std::size_t descriptors;
  std::size_t threads;
  std::size_t children;  // zombies included; none on Windows, where nothing has to be reaped
};
Held HeldNow();

// Resident memory in bytes.
std::size_t MemoryNow();

// Tells whether a process runs; one that has ended and waits to be reaped does not.
bool Runs(unsigned long id);

}  // namespace tests
