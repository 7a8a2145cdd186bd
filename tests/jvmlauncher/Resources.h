// The handles, children and memory of this process.
#pragma once

namespace tests {

struct Resources {
  long handles;  // handles or file descriptors
  long zombies;  // children that ended and were not reaped
  long memory;   // private memory in KiB
};

Resources MeasureResources();

// A pipe whose ends a child may inherit: the reading end, then the writing one.
bool MakePipe(int (&ends)[2]);
void CloseEnd(int end);
// Waits for the next byte; true when there is none because all writing ends are closed.
bool IsAtItsEnd(int readingEnd);

}  // namespace tests
