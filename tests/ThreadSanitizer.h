// What a test has to know of a build with the thread sanitizer.
#pragma once

#include <gtest/gtest.h>

namespace tests {

#if defined(__SANITIZE_THREAD__)
inline constexpr bool WithThreadSanitizer = true;
#else
inline constexpr bool WithThreadSanitizer = false;
#endif

}  // namespace tests

// For a test that would take half a minute there, on one thread, where nothing is to be found.
#define SKIP_AMOUNT_WITH_THREAD_SANITIZER() \
  if (tests::WithThreadSanitizer) GTEST_SKIP() << "with the thread sanitizer: an amount on one thread"
