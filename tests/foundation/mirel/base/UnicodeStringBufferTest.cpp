#include <gtest/gtest.h>
#include <mirel/base/UnicodeStringBuffer.h>

#include "foundation/MemoryFailures.h"
#include "foundation/mirel/Units.h"

namespace tests {
namespace {

using mirel::base::CUnicodeString;
using mirel::base::CUnicodeStringBuffer;

TEST(UnicodeStringBufferTest, AnEmptyBufferReturnsAnEmptyTextAndNotNull) {
  for (const unsigned int capacity : {0u, 32u}) {
    const CUnicodeStringBuffer buffer(capacity);
    EXPECT_EQ(UnitsOf(buffer.ToString()), Wide(RX_TEXT("")));
    EXPECT_EQ(buffer.GetLength(), 0u);
  }
}

TEST(UnicodeStringBufferTest, UnitsWideTextAndStringsAreAppendedInOrder) {
  CUnicodeStringBuffer buffer(32);
  buffer += RX::UniChar('-');
  buffer += RX_TEXT("D");
  buffer += CUnicodeString(RX_TEXT("user.dir"));
  EXPECT_EQ(&(buffer += RX_TEXT("=")), &buffer);
  EXPECT_EQ(UnitsOf(buffer.ToString()), Wide(RX_TEXT("-Duser.dir=")));
  EXPECT_EQ(buffer.GetLength(), 11u);
}

TEST(UnicodeStringBufferTest, NullAndEmptyTextsAppendNothing) {
  CUnicodeStringBuffer buffer(0);
  buffer += static_cast<const RX::UniChar*>(nullptr);
  buffer += RX_TEXT("");
  buffer += CUnicodeString();
  buffer += CUnicodeString(RX_TEXT(""));
  EXPECT_EQ(UnitsOf(buffer.ToString()), Wide(RX_TEXT("")));
}

TEST(UnicodeStringBufferTest, ZeroUnitsOfAStringAreAppended) {
  CUnicodeStringBuffer buffer(4);
  buffer += CUnicodeString(RX_TEXT("a\0b"), 3);
  buffer += RX::UniChar(0);
  EXPECT_EQ(UnitsOf(buffer.ToString()), WideText(RX_TEXT("a\0b\0"), 4));
}

TEST(UnicodeStringBufferTest, EveryCapacityHoldsWhatIsAppended) {
  for (unsigned int capacity = 0; capacity < 20; ++capacity) {
    SCOPED_TRACE(capacity);
    CUnicodeStringBuffer buffer(capacity);
    WideText expected;
    for (int i = 0; i < 100; ++i) {
      const auto unit = static_cast<RX::UniChar>('a' + i % 26);
      buffer += unit;
      expected += unit;
    }
    EXPECT_EQ(UnitsOf(buffer.ToString()), expected);
    CUnicodeStringBuffer twice(capacity);
    twice += buffer.ToString();
    twice += buffer.ToString();
    EXPECT_EQ(UnitsOf(twice.ToString()), expected + expected);
  }
}

TEST(UnicodeStringBufferTest, TheCapacityAskedForNeedsNoFurtherBlock) {
  Allocations allocations;
  CUnicodeStringBuffer buffer(3);
  buffer += RX_TEXT("abc");
  EXPECT_EQ(allocations.Made(), 1);
  buffer += RX::UniChar('d');
  EXPECT_EQ(allocations.Made(), 2);
  EXPECT_EQ(allocations.Live(), 1u);
}

TEST(UnicodeStringBufferTest, GrowthIsGeometric) {
  Allocations allocations;
  CUnicodeStringBuffer buffer(1);
  for (int i = 0; i < 100000; ++i) buffer += RX::UniChar('x');
  EXPECT_LT(allocations.Made(), 20);
}

TEST(UnicodeStringBufferTest, TextsThatWereReturnedAreNotTouchedByFurtherAppends) {
  CUnicodeStringBuffer buffer(8);
  buffer += RX_TEXT("abc");
  const CUnicodeString text = buffer.ToString();
  buffer += RX_TEXT("def");
  EXPECT_EQ(UnitsOf(text), Wide(RX_TEXT("abc")));
}

TEST(UnicodeStringBufferTest, TheEndIsThatOfWhatWasAppended) {
  CUnicodeStringBuffer buffer(8);
  EXPECT_FALSE(buffer.EndsWith('a'));
  EXPECT_FALSE(buffer.EndsWith(0));
  buffer += RX_TEXT("ba");
  EXPECT_TRUE(buffer.EndsWith('a'));
  EXPECT_FALSE(buffer.EndsWith('b'));
  buffer.Truncate(1);
  EXPECT_TRUE(buffer.EndsWith('b'));
}

TEST(UnicodeStringBufferTest, TruncationCutsAndNeverLengthens) {
  CUnicodeStringBuffer buffer(8);
  buffer += RX_TEXT("abcd");
  buffer.Truncate(5);
  buffer.Truncate(4);
  EXPECT_EQ(UnitsOf(buffer.ToString()), Wide(RX_TEXT("abcd")));
  buffer.Truncate(2);
  buffer += RX::UniChar('x');
  EXPECT_EQ(UnitsOf(buffer.ToString()), Wide(RX_TEXT("abx")));
  buffer.Truncate(0);
  EXPECT_EQ(UnitsOf(buffer.ToString()), Wide(RX_TEXT("")));
}

TEST(UnicodeStringBufferTest, ExhaustionThrowsAndKeepsWhatWasAppended) {
  const char* const file = "mirel/base/UnicodeStringBuffer";
  EXPECT_EQ(FailEachAllocationOf(
                file, [] { CUnicodeStringBuffer made(32); }, [] {}),
            1);
  static const struct {
    const char* name;
    void (*append)(CUnicodeStringBuffer& buffer);
    const RX::UniChar* result;
  } rows[] = {
      {"a unit", [](CUnicodeStringBuffer& buffer) { buffer += RX::UniChar('d'); }, RX_TEXT("abcd")},
      {"wide text", [](CUnicodeStringBuffer& buffer) { buffer += RX_TEXT("defghij"); }, RX_TEXT("abcdefghij")},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    CUnicodeStringBuffer buffer(3);
    buffer += RX_TEXT("abc");
    const auto unchanged = [&] {
      EXPECT_EQ(UnitsOf(buffer.ToString()), Wide(RX_TEXT("abc")));
      EXPECT_EQ(buffer.GetLength(), 3u);
    };
    EXPECT_EQ(FailEachAllocationOf(
                  "mirel/base/UnicodeString", [&] { buffer.ToString(); }, unchanged),
              1);
    EXPECT_EQ(FailEachAllocationOf(
                  file, [&] { row.append(buffer); }, unchanged),
              1);
    EXPECT_EQ(UnitsOf(buffer.ToString()), Wide(row.result));
  }
}

}  // namespace
}  // namespace tests
