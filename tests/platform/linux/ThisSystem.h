// What differs between systems in one line. The build has the folder of one system on the include path.
#pragma once

#include <cstdlib>

namespace tests {

constexpr bool OnWindows = false;

// Returns the one of two texts that is for this system; the first is for Windows.
constexpr const char* OnThisSystem(const char*, const char* other) { return other; }

// Sets a variable in the environment of this process.
inline void SetVariable(const char* name, const char* value) { setenv(name, value, 1); }

}  // namespace tests
