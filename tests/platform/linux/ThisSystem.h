// What differs between the systems where tests differ by nothing else. The build has the folder of one system on the
// include path.
#pragma once

namespace tests {

constexpr bool OnWindows = false;

// Of two values the one for this system; the first is the value on Windows.
template <typename T>
constexpr T OnThisSystem(T, T other) {
  return other;
}

}  // namespace tests
