// What this process holds.
#pragma once

namespace tests {

struct Resources {
  long handles;  // handles or file descriptors
  long zombies;  // children that ended and were not reaped
  long memory;   // private memory in KiB
};

Resources MeasureResources();

}  // namespace tests
