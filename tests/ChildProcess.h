// The end of a child process that GoogleTest starts for one test.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

namespace tests {

// Exits with 0, or with another code when an expectation has failed. What failed is printed: in a child process
// GoogleTest prints no failures.
[[noreturn]] inline void ExitWithTheResult() {
  const testing::TestResult& result = *testing::UnitTest::GetInstance()->current_test_info()->result();
  for (int i = 0; i < result.total_part_count(); ++i) {
    const testing::TestPartResult& part = result.GetTestPartResult(i);
    if (part.failed()) std::fprintf(stderr, "%s:%d: %s\n", part.file_name(), part.line_number(), part.message());
  }
  std::exit(testing::Test::HasFailure() ? 99 : 0);
}

}  // namespace tests
