#include "fakes/Failure.h"

#include <mirel/base/IllegalArgumentException.h>

namespace tests {
namespace {

using mirel::base::CIllegalArgumentException;

Failure At(unsigned int line) { return Throws<CIllegalArgumentException>("a/File", line, "text"); }

// A failure with line 0 has lost its line.
TEST(FailureTest, AnyLineIsEachButZero) {
  for (const unsigned int line : {1u, 132u, AnyLine - 1, AnyLine}) {
    EXPECT_EQ(At(line), At(AnyLine));
    EXPECT_EQ(At(AnyLine), At(line));
  }
  EXPECT_FALSE(At(0) == At(AnyLine));
  EXPECT_FALSE(At(AnyLine) == At(0));
  EXPECT_EQ(At(0), At(0));
  EXPECT_FALSE(At(1) == At(2));
  EXPECT_FALSE(FailureOf([] {}) == At(AnyLine)) << "nothing was thrown";
}

TEST(FailureTest, WhatIsThrownIsReadWhole) {
  const Failure thrown = FailureOf([] { throw CIllegalArgumentException("a/File", 7, "text", nullptr); });
  EXPECT_EQ(thrown, At(7));
  EXPECT_EQ(thrown, At(AnyLine));
  EXPECT_FALSE(thrown == At(8));
  EXPECT_FALSE(thrown == Throws<CIllegalArgumentException>("other/File", 7, "text"));
  EXPECT_FALSE(thrown == Throws<CIllegalArgumentException>("a/File", 7, "other"));
  EXPECT_FALSE(thrown == Throws<mirel::base::CException>("a/File", 7, "text"));
}

}  // namespace
}  // namespace tests
