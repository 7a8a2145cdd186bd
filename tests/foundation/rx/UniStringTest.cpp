#include <gtest/gtest.h>
#include <rx/UniString.h>

#include <memory>
#include <string>

#include "foundation/MemoryFailures.h"

namespace tests {
namespace {

using WideText = std::basic_string<RX::UniChar>;

const RX::UniChar* Units(const RX::UniString& text) { return text; }

TEST(UniStringTest, ATextMadeFromNothingConvertsToNullAndOneMadeFromEmptyTextToEmptyText) {
  EXPECT_EQ(Units(RX::UniString()), nullptr);
  EXPECT_EQ(Units(RX::UniString(nullptr)), nullptr);
  const RX::UniString empty(RX_TEXT(""));
  ASSERT_NE(Units(empty), nullptr);
  EXPECT_EQ(*Units(empty), 0);
}

TEST(UniStringTest, UnitsAreCopied) {
  RX::UniChar source[] = RX_TEXT("abc");
  const RX::UniString text(source);
  source[0] = 'x';
  EXPECT_EQ(WideText(text), WideText(RX_TEXT("abc")));
}

TEST(UniStringTest, CopiesOutliveTheirOriginal) {
  auto original = std::make_unique<RX::UniString>(RX_TEXT("abc"));
  const RX::UniString copy(*original);
  RX::UniString assigned(RX_TEXT("a longer text of its own"));
  assigned = *original;
  EXPECT_NE(Units(copy), Units(*original));
  original.reset();
  EXPECT_EQ(WideText(copy), WideText(RX_TEXT("abc")));
  EXPECT_EQ(WideText(assigned), WideText(RX_TEXT("abc")));
}

TEST(UniStringTest, CopiesOfANullTextAreNull) {
  const RX::UniString null;
  const RX::UniString copy(null);
  RX::UniString assigned(RX_TEXT("abc"));
  assigned = null;
  EXPECT_EQ(Units(copy), nullptr);
  EXPECT_EQ(Units(assigned), nullptr);
}

TEST(UniStringTest, AssignmentToItselfKeepsTheText) {
  RX::UniString text(RX_TEXT("abc"));
  const RX::UniString& same = text;
  text = same;
  EXPECT_EQ(WideText(text), WideText(RX_TEXT("abc")));
}

TEST(UniStringTest, EveryTextFreesItsBlock) {
  Allocations allocations;
  {
    const RX::UniString text(RX_TEXT("abc"));
    const RX::UniString copy(text);
    RX::UniString assigned(RX_TEXT("x"));
    assigned = copy;
    EXPECT_EQ(allocations.Live(), 3u);
  }
  EXPECT_EQ(allocations.Live(), 0u);
}

TEST(UniStringTest, ExhaustionThrowsAndKeepsWhatAnAssignmentWasToReplace) {
  const RX::UniString other(RX_TEXT("other"));
  RX::UniString text(RX_TEXT("abc"));
  const auto unchanged = [&] { EXPECT_EQ(WideText(text), WideText(RX_TEXT("abc"))); };
  EXPECT_EQ(FailEachRootAllocationOf([&] { RX::UniString made(RX_TEXT("x")); }, unchanged), 1);
  EXPECT_EQ(FailEachRootAllocationOf([&] { RX::UniString made(other); }, unchanged), 1);
  EXPECT_EQ(FailEachRootAllocationOf([&] { text = other; }, unchanged), 1);
  EXPECT_EQ(WideText(text), WideText(RX_TEXT("other")));
}

}  // namespace
}  // namespace tests
