#include <gtest/gtest.h>
#include <rx/Memory.h>
#include <rx/Text.h>
#include <rx/UniString.h>

#include <memory>
#include <string>
#include <utility>

#include "foundation/MemoryFailures.h"

namespace tests {
namespace {

using WideText = std::basic_string<RX::UniChar>;

const RX::UniChar* Units(const RX::UniString& text) { return text; }

TEST(TextTest, LengthCountsUnitsBeforeTheTerminatingZero) {
  EXPECT_EQ(RX::ucslen(RX_TEXT("")), 0u);
  EXPECT_EQ(RX::ucslen(RX_TEXT("abc")), 3u);
  EXPECT_EQ(RX::ucslen(RX_TEXT("\u20ac")), 1u);
  EXPECT_EQ(RX::ucslen(RX_TEXT("\U0001F600")), 2u);
  EXPECT_EQ(RX::ucslen(RX_TEXT("ab\0cd")), 2u);
}

TEST(TextTest, LengthIsTheSameWhereverATextBeginsInMemory) {
  // No unit is zero, but one half of each is.
  WideText units;
  for (int i = 0; i < 200; ++i) units += static_cast<RX::UniChar>(i % 2 == 0 ? 0x0100 : 0x00FF);
  for (std::size_t begin = 0; begin < 16; ++begin) {
    for (std::size_t length = 0; begin + length < units.size(); ++length) {
      WideText text = units;
      text[begin + length] = 0;
      ASSERT_EQ(RX::ucslen(text.c_str() + begin), length) << "from " << begin;
    }
  }
}

TEST(TextTest, AConstantIsTheLiteralItselfAndKnownToTheCompiler) {
  static constexpr RX::UniChar literal[] = RX_TEXT("text");
  static constexpr const RX::UniChar* constant = RX::DefineConstantUTF16CharacterOrString(literal);
  static_assert(constant == literal && constant[3] == 't' && constant[4] == 0, "made at compile time");
  EXPECT_EQ(WideText(constant), WideText(RX_TEXT("text")));
}

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

TEST(UniStringTest, EveryTextGivesItsBlockBack) {
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
