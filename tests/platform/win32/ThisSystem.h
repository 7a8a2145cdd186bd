// Constants that differ between systems. The build has the folder of one system on the include path.
#pragma once

namespace tests {

constexpr bool OnWindows = true;

// Returns the one of two texts that is for this system; the first is for Windows.
constexpr const char* OnThisSystem(const char* windows, const char*) { return windows; }

}  // namespace tests
