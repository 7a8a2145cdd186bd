// Calls of the system that fail, one after the other.
#pragma once

#include <atomic>
#include <set>
#include <string>

#include "java/processes/Probe.h"
#include "java/processes/ThisProcess.h"

namespace tests {

// How many calls come before the one that fails; while it is negative none fails.
inline std::atomic<long> g_callsLeft = -1;
// The system's error of that one.
inline std::atomic<int> g_error = 0;

// Counts a call. Returns whether it is the one that fails.
inline bool IsToFail() { return g_callsLeft >= 0 && g_callsLeft-- == 0; }

// Runs the function again and again, each time with the next of its calls failing, until none is left. Returns the
// texts of the failures.
template <class Function>
std::set<std::string> FailEach(int error, const Function& function) {
  std::set<std::string> texts;
  function();
  const Held before = HeldNow();
  for (long calls = 0;; ++calls) {
    g_error = error;
    g_callsLeft = calls;
    try {
      function();
    } catch (const java::Failure& failure) {
      texts.insert(failure.what());
    }
    const bool isDone = g_callsLeft.exchange(-1) >= 0;
    ExpectHeld(before, "call " + std::to_string(calls));
    if (isDone || testing::Test::HasFailure()) break;
  }
  return texts;
}

inline std::size_t CountOf(const std::set<std::string>& texts, const std::string& beginning) {
  std::size_t count = 0;
  for (const std::string& text : texts) count += text.compare(0, beginning.size(), beginning) == 0 ? 1 : 0;
  return count;
}

}  // namespace tests
