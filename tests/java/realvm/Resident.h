// Checks that work which is repeated does not take more and more memory.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <string>

namespace tests {

// How much of the process is in memory; 0 when the system does not tell, and where the address sanitizer keeps what is
// freed: its own check for leaks has to do there.
inline std::size_t ResidentKibibytes() {
#if defined(__SANITIZE_ADDRESS__)
  return 0;
#else
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.rfind("VmRSS:", 0) == 0) return std::stoul(line.substr(6));
  }
  return 0;
#endif
}

// A leak grows in each round. The VM grows, too, but not in each.
inline void ExpectGrowthToEnd(std::size_t kibibytes, const std::function<void()>& round) {
  if (ResidentKibibytes() == 0) GTEST_SKIP() << "this build cannot tell how much memory it uses";
  round();
  bool hasEnded = false;
  for (int i = 0; i < 5 && !hasEnded; ++i) {
    const std::size_t before = ResidentKibibytes();
    round();
    hasEnded = ResidentKibibytes() < before + kibibytes;
  }
  EXPECT_TRUE(hasEnded) << "more than " << kibibytes << " KiB in each round";
}

}  // namespace tests
