// Tests that an operation leaves no reference, whether it succeeds or fails.
#pragma once

#include <functional>

#include "java/realvm/CountedReferences.h"
#include "java/realvm/OneVm.h"

namespace tests {

class NothingLeftTest : public RealVmTest {
 protected:
  // Classes and IDs that are found on the way are kept, so that the first time does not count.
  static void ExpectNothing(const std::function<void()>& operation, int rounds = 3) {
    operation();
    const CountedReferences counted(java::detail::Env());
    for (int i = 0; i < rounds; ++i) operation();
    EXPECT_EQ(counted.Locals(), 0);
    EXPECT_EQ(counted.Globals(), 0);
    EXPECT_EQ(counted.Weaks(), 0);
  }

  // The same of one, each of whose steps fails in turn: once the first, then the second, until it succeeds.
  template <typename Operation>
  static void ExpectNothingWhereverItFails(Operation operation, int atLeast) {
    operation();
    int failures = 0;
    for (bool hasFailed = true; hasFailed; ++failures) {
      const CountedReferences counted(java::detail::Env());
      CountedReferences::FailAt(failures + 1);
      bool thrown = false;
      try {
        operation();
      } catch (const java::Error& error) {
        thrown = true;
        EXPECT_STREQ(error.what(), "java.lang.OutOfMemoryError: as the test wants");
      }
      hasFailed = CountedReferences::HasFailed();
      EXPECT_EQ(thrown, hasFailed) << "step " << failures;
      EXPECT_EQ(counted.Locals(), 0) << "step " << failures;
      EXPECT_EQ(counted.Globals(), 0) << "step " << failures;
      // One that succeeds may keep some, as a native method's function does for as long as its class.
      if (hasFailed) {
        EXPECT_EQ(counted.Weaks(), 0) << "step " << failures;
      }
      EXPECT_EQ(java::detail::Env()->ExceptionCheck(), JNI_FALSE) << "step " << failures;
    }
    EXPECT_GT(failures, atLeast);
  }

  // The same where the VM makes no global reference, array, direct buffer or native method, and does not say why.
  template <typename Operation>
  static void ExpectNothingWhereverItFailsSilently(Operation operation, int atLeast) {
    operation();
    int failures = 0;
    for (bool hasFailed = true; hasFailed; ++failures) {
      const CountedReferences counted(java::detail::Env());
      CountedReferences::FailSilentlyAt(failures + 1);
      std::string thrown;
      try {
        operation();
      } catch (const std::bad_alloc&) {
        thrown = "bad_alloc";
      } catch (const java::Failure& failure) {
        thrown = failure.what();
      }
      hasFailed = CountedReferences::HasFailed();
      if (hasFailed) {
        EXPECT_THAT(thrown, testing::AnyOf("bad_alloc", "This Java VM has no direct buffers",
                                           testing::MatchesRegex("This Java VM takes no C.. function for "
                                                                 ".*: it refuses the function .JNI_ERR.")))
            << "step " << failures;
      } else {
        EXPECT_EQ(thrown, "") << "step " << failures;
      }
      EXPECT_EQ(counted.Locals(), 0) << "step " << failures;
      EXPECT_EQ(counted.Globals(), 0) << "step " << failures;
      // One that succeeds may keep some, as a native method's function does for as long as its class.
      if (hasFailed) {
        EXPECT_EQ(counted.Weaks(), 0) << "step " << failures;
      }
      EXPECT_EQ(java::detail::Env()->ExceptionCheck(), JNI_FALSE) << "step " << failures;
    }
    EXPECT_GT(failures, atLeast);
  }

  // The same of one that has to throw.
  template <typename Operation>
  static void ExpectNothingOfThrowing(Operation operation) {
    ExpectNothing([&] {
      bool thrown = false;
      try {
        operation();
      } catch (const java::Failure&) {
        thrown = true;
      }
      EXPECT_TRUE(thrown);
    });
  }
};

}  // namespace tests
