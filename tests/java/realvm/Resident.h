// Checks that work which is repeated does not take more and more memory.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#if __has_include(<malloc.h>)
#include <malloc.h>
#endif

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

// How much of the C++ heap is in use; 0 where its library does not tell.
inline std::size_t HeapKibibytes() {
#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#if __GLIBC_PREREQ(2, 33)
  const struct mallinfo2 info = mallinfo2();
  return (info.uordblks + info.hblkhd) / 1024;
#endif
#endif
  return 0;
}

// Something that tells how much memory is used, or 0 where it cannot, and what it may grow by in a round.
struct Gauge {
  const char* name;
  std::size_t (*kibibytes)();
  std::size_t most;
};

// A leak grows in each round. The VM grows, too, but not in each. At least two rounds are made; one where no gauge
// tells anything, for what else the test and a sanitizer see.
inline void ExpectGrowthToEnd(std::vector<Gauge> growing, const std::function<void()>& round) {
  round();
  const auto tellsNothing = [](const Gauge& gauge) { return gauge.kibibytes() == 0; };
  growing.erase(std::remove_if(growing.begin(), growing.end(), tellsNothing), growing.end());
  if (growing.empty()) GTEST_SKIP() << "this build cannot tell how much memory it uses: one round was made";
  for (int i = 0; i < 5 && !growing.empty(); ++i) {
    std::vector<std::size_t> before;
    for (const Gauge& gauge : growing) before.push_back(gauge.kibibytes());
    round();
    for (std::size_t j = growing.size(); j-- > 0;) {
      if (growing[j].kibibytes() < before[j] + growing[j].most)
        growing.erase(growing.begin() + static_cast<std::ptrdiff_t>(j));
    }
  }
  for (const Gauge& gauge : growing) {
    ADD_FAILURE() << gauge.name << ": more than " << gauge.most << " KiB in each round";
  }
}

// The same of the process and of the C++ heap.
inline void ExpectGrowthToEnd(std::size_t kibibytes, const std::function<void()>& round) {
  ExpectGrowthToEnd({{"the process", ResidentKibibytes, kibibytes}, {"the C++ heap", HeapKibibytes, kibibytes}}, round);
}

}  // namespace tests
