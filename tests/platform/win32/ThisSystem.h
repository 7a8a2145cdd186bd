// What differs between the systems where tests differ by nothing else. The build has the folder of one system on the
// include path.
#pragma once

namespace tests {

constexpr bool OnWindows = true;

// Of two values the one for this system; the first is the value on Windows.
template <typename T>
constexpr T OnThisSystem(T windows, T) {
  return windows;
}

}  // namespace tests
