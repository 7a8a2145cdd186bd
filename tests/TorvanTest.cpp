#include <mirel/Mirel.h>
#include <torvan/Initialize.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Foundation.h"

namespace tests {

using namespace torvan;

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int MostUses = 2147483647;

// A library with a number of uses. Its foundation records each call.
class TorvanTest : public ::testing::Test {
 protected:
  TorvanTest() { s_calls.clear(); }

  static Foundation WithUses(int count) { return {InitializeFoundation, TerminateFoundation, count}; }
  static Foundation Failing() { return {FailToInitializeFoundation, TerminateFoundation, 0}; }

  static inline std::vector<std::string> s_calls;

 private:
  static int InitializeFoundation() noexcept {
    s_calls.push_back("initialize");
    return 1;
  }
  static int FailToInitializeFoundation() noexcept {
    s_calls.push_back("initialize");
    return -5;
  }
  static int TerminateFoundation() noexcept {
    s_calls.push_back("terminate");
    return -7;  // ignored
  }
};

TEST_F(TorvanTest, TheFoundationIsUpFromTheFirstUseToTheLast) {
  FoundationScope scope(WithUses(0));
  EXPECT_EQ(Initialize(), 1);
  EXPECT_THAT(s_calls, ElementsAre("initialize"));
  EXPECT_EQ(Initialize(), 2);
  EXPECT_EQ(Initialize(), 3);
  EXPECT_EQ(Terminate(), 2);
  EXPECT_EQ(Terminate(), 1);
  EXPECT_THAT(s_calls, ElementsAre("initialize"));
  EXPECT_EQ(Terminate(), 0);
  EXPECT_THAT(s_calls, ElementsAre("initialize", "terminate"));
}

TEST_F(TorvanTest, TheFoundationComesUpAgainAfterTheLastUse) {
  FoundationScope scope(WithUses(0));
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(Initialize(), 1);
    EXPECT_EQ(Terminate(), 0);
  }
  EXPECT_THAT(s_calls, ElementsAre("initialize", "terminate", "initialize", "terminate"));
}

TEST_F(TorvanTest, TerminatingWithoutUsesDoesNothing) {
  FoundationScope scope(WithUses(0));
  EXPECT_EQ(Terminate(), 0);
  EXPECT_EQ(Terminate(), 0);
  EXPECT_THAT(s_calls, IsEmpty());
  EXPECT_EQ(Initialize(), 1) << "nothing was owed";
}

TEST_F(TorvanTest, AFirstUseThatFailsReturnsTheFoundationsResultAndStillCounts) {
  FoundationScope scope(Failing());
  EXPECT_EQ(Initialize(), -5);
  EXPECT_EQ(Initialize(), 2);
  EXPECT_THAT(s_calls, ElementsAre("initialize")) << "it is not tried again";
  EXPECT_EQ(Terminate(), 1);
  EXPECT_EQ(Terminate(), 0);
  EXPECT_THAT(s_calls, ElementsAre("initialize", "terminate"));
}

TEST_F(TorvanTest, AResultOfZeroFromTheFoundationIsSuccess) {
  FoundationScope scope({[]() noexcept { return 0; }, []() noexcept { return 0; }, 0});
  EXPECT_EQ(Initialize(), 1);
}

TEST_F(TorvanTest, TheUseCountStaysAtItsMaximum) {
  FoundationScope scope(WithUses(MostUses - 1));
  EXPECT_EQ(Initialize(), MostUses);
  EXPECT_EQ(Initialize(), MostUses);
  EXPECT_EQ(Foundation::Current().useCount, MostUses);
  EXPECT_EQ(Terminate(), MostUses - 1) << "the use that found the maximum was not counted";
  EXPECT_THAT(s_calls, IsEmpty());
}

TEST_F(TorvanTest, ByDefaultTheRealFoundationIsBroughtUpAndDown) {
  EXPECT_EQ(Foundation::Current().useCount, 0);
  ASSERT_EQ(mirel::Terminate(), 0) << "no other code uses it here";
  EXPECT_EQ(Initialize(), 1);
  EXPECT_EQ(mirel::Initialize(), 2);
  EXPECT_EQ(mirel::Terminate(), 1);
  EXPECT_EQ(Terminate(), 0);
  EXPECT_EQ(mirel::Terminate(), 0);
}

}  // namespace
}  // namespace tests
