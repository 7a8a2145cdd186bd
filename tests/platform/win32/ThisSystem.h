// Constants that differ between systems. The build has the folder of one system on the include path.
#pragma once

namespace tests {

constexpr bool OnWindows = true;

// Returns the one of two values that is for this system; the first is for Windows.
template <typename T>
constexpr T OnThisSystem(T windows, T) {
  return windows;
}

}  // namespace tests
