// What the fuzzers share.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace tests {

// Ends the process, which makes the fuzzer keep the input.
inline void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "violated: %s\n", what);
  std::abort();
}

inline std::string_view Input(const unsigned char* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

}  // namespace tests

// The entry point that libFuzzer calls with each input.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size);
