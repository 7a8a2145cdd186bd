#include <gtest/gtest.h>
#include <mirel/base/UnicodeString.h>

#include <cstring>
#include <memory>
#include <new>

#include "foundation/MemoryFailures.h"
#include "foundation/mirel/Units.h"

namespace tests {
namespace {

using mirel::base::CUnicodeString;

constexpr const RX::UniChar* Null = nullptr;

const RX::UniChar* Units(const CUnicodeString& text) { return text; }

TEST(UnicodeStringTest, ATextMadeFromNothingConvertsToNullAndOneMadeFromEmptyTextToEmptyText) {
  static const struct {
    const char* name;
    CUnicodeString text;
    const RX::UniChar* units;
  } rows[] = {
      {"default", CUnicodeString(), RX_TEXT("(null)")},
      {"null", CUnicodeString(Null), RX_TEXT("(null)")},
      {"null with a length", CUnicodeString(Null, 3), RX_TEXT("(null)")},
      {"copy of null", CUnicodeString(CUnicodeString()), RX_TEXT("(null)")},
      {"empty", CUnicodeString(RX_TEXT("")), RX_TEXT("")},
      {"no units", CUnicodeString(RX_TEXT("abc"), 0), RX_TEXT("")},
      {"copy of empty", CUnicodeString(CUnicodeString(RX_TEXT(""))), RX_TEXT("")},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(UnitsOf(row.text), Wide(row.units));
    EXPECT_EQ(row.text.GetLength(), 0u);
  }
}

TEST(UnicodeStringTest, UnitsAreCopied) {
  RX::UniChar source[] = RX_TEXT("a\u00e4\u20ac\U0001F600");
  const CUnicodeString text(source);
  const CUnicodeString part(source, 2);
  source[0] = 'x';
  EXPECT_EQ(UnitsOf(text), Wide(RX_TEXT("a\u00e4\u20ac\U0001F600")));
  EXPECT_EQ(text.GetLength(), 5u);
  EXPECT_EQ(UnitsOf(part), Wide(RX_TEXT("a\u00e4")));
}

TEST(UnicodeStringTest, AGivenNumberOfUnitsMayHoldZeros) {
  const CUnicodeString text(RX_TEXT("a\0b"), 3);
  EXPECT_EQ(UnitsOf(text), WideText(RX_TEXT("a\0b"), 3));
  EXPECT_EQ(UnitsOf(CUnicodeString(text)), WideText(RX_TEXT("a\0b"), 3));
}

TEST(UnicodeStringTest, CopiesOutliveTheirOriginal) {
  auto original = std::make_unique<CUnicodeString>(RX_TEXT("abc"));
  const CUnicodeString copy(*original);
  CUnicodeString assigned(RX_TEXT("a longer text of its own"));
  EXPECT_EQ(&(assigned = *original), &assigned);
  EXPECT_NE(Units(copy), Units(*original));
  original.reset();
  EXPECT_EQ(UnitsOf(copy), Wide(RX_TEXT("abc")));
  EXPECT_EQ(UnitsOf(assigned), Wide(RX_TEXT("abc")));
}

TEST(UnicodeStringTest, AssignmentToItselfAndFromItsOwnUnitsKeepsTheText) {
  CUnicodeString text(RX_TEXT("abc"));
  const CUnicodeString& same = text;
  text = same;
  EXPECT_EQ(UnitsOf(text), Wide(RX_TEXT("abc")));
  text = Units(text) + 1;
  EXPECT_EQ(UnitsOf(text), Wide(RX_TEXT("bc")));
}

TEST(UnicodeStringTest, NullAndEmptyAreAssignedAsTheyAre) {
  CUnicodeString text(RX_TEXT("abc"));
  text = CUnicodeString(RX_TEXT(""));
  EXPECT_EQ(UnitsOf(text), Wide(RX_TEXT("")));
  text = CUnicodeString();
  EXPECT_EQ(UnitsOf(text), Wide(RX_TEXT("(null)")));
}

TEST(UnicodeStringTest, AnObjectMayBeMovedByteByByte) {
  Allocations allocations;
  alignas(CUnicodeString) unsigned char first[sizeof(CUnicodeString)];
  alignas(CUnicodeString) unsigned char second[sizeof(CUnicodeString)];
  ::new (static_cast<void*>(first)) CUnicodeString(RX_TEXT("abc"));
  std::memcpy(second, first, sizeof(second));
  std::memset(first, 0xCC, sizeof(first));
  auto* const moved = std::launder(reinterpret_cast<CUnicodeString*>(second));
  EXPECT_EQ(UnitsOf(*moved), Wide(RX_TEXT("abc")));
  moved->~CUnicodeString();
  EXPECT_EQ(allocations.Live(), 0u);
}

TEST(UnicodeStringTest, MidReturnsUnitsFromTheStart) {
  const CUnicodeString text(RX_TEXT("abcd"));
  static const struct {
    const char* name;
    unsigned int start;
    unsigned int count;
    const RX::UniChar* result;
  } rows[] = {
      {"inside", 1, 2, RX_TEXT("bc")},
      {"nothing", 1, 0, RX_TEXT("")},
      {"all", 0, 4, RX_TEXT("abcd")},
      {"more than there is", 2, 99, RX_TEXT("cd")},
      {"as much as there can be", 3, 0xFFFFFFFF, RX_TEXT("d")},
      {"at the end", 4, 1, RX_TEXT("")},
      {"past the end", 5, 1, RX_TEXT("")},
      {"far past the end", 0xFFFFFFFF, 0xFFFFFFFF, RX_TEXT("")},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(UnitsOf(text.Mid(row.start, row.count)), Wide(row.result));
  }
  EXPECT_EQ(UnitsOf(text.Mid(0)), Wide(RX_TEXT("abcd")));
  EXPECT_EQ(UnitsOf(text.Mid(3)), Wide(RX_TEXT("d")));
  EXPECT_EQ(UnitsOf(text.Mid(4)), Wide(RX_TEXT("")));
  EXPECT_EQ(UnitsOf(text.Mid(5)), Wide(RX_TEXT("")));
  EXPECT_EQ(UnitsOf(CUnicodeString().Mid(0)), Wide(RX_TEXT("")));
  EXPECT_EQ(UnitsOf(CUnicodeString().Mid(0, 1)), Wide(RX_TEXT("")));
}

TEST(UnicodeStringTest, InsertPutsTextBeforeAUnit) {
  static const struct {
    const char* name;
    const RX::UniChar* before;
    unsigned int index;
    const RX::UniChar* text;
    const RX::UniChar* after;
  } rows[] = {
      {"at the start", RX_TEXT("abc"), 0, RX_TEXT("xy"), RX_TEXT("xyabc")},
      {"inside", RX_TEXT("abc"), 2, RX_TEXT("xy"), RX_TEXT("abxyc")},
      {"at the end", RX_TEXT("abc"), 3, RX_TEXT("xy"), RX_TEXT("abcxy")},
      {"past the end", RX_TEXT("abc"), 0xFFFFFFFF, RX_TEXT("xy"), RX_TEXT("abcxy")},
      {"null", RX_TEXT("abc"), 1, Null, RX_TEXT("abc")},
      {"empty", RX_TEXT("abc"), 1, RX_TEXT(""), RX_TEXT("abc")},
      {"into null", Null, 0, RX_TEXT("xy"), RX_TEXT("xy")},
      {"null into null", Null, 0, Null, RX_TEXT("(null)")},
      {"into empty", RX_TEXT(""), 7, RX_TEXT("xy"), RX_TEXT("xy")},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    CUnicodeString text(row.before);
    text.Insert(row.index, row.text);
    EXPECT_EQ(UnitsOf(text), Wide(row.after));
  }
}

TEST(UnicodeStringTest, ATextCanBeInsertedIntoItself) {
  CUnicodeString text(RX_TEXT("abc"));
  text.Insert(1, text);
  EXPECT_EQ(UnitsOf(text), Wide(RX_TEXT("aabcbc")));
}

TEST(UnicodeStringTest, JoiningReturnsBothTextsAndNeverNull) {
  const CUnicodeString ab(RX_TEXT("ab"));
  const CUnicodeString null;
  EXPECT_EQ(UnitsOf(ab + CUnicodeString(RX_TEXT("cd"))), Wide(RX_TEXT("abcd")));
  EXPECT_EQ(UnitsOf(ab + RX_TEXT("cd")), Wide(RX_TEXT("abcd")));
  EXPECT_EQ(UnitsOf(RX_TEXT("cd") + ab), Wide(RX_TEXT("cdab")));
  EXPECT_EQ(UnitsOf(ab + null), Wide(RX_TEXT("ab")));
  EXPECT_EQ(UnitsOf(null + ab), Wide(RX_TEXT("ab")));
  EXPECT_EQ(UnitsOf(null + null), Wide(RX_TEXT("")));
  EXPECT_EQ(UnitsOf(null + Null), Wide(RX_TEXT("")));
  EXPECT_EQ(UnitsOf(Null + null), Wide(RX_TEXT("")));
  EXPECT_EQ(UnitsOf(ab + ab), Wide(RX_TEXT("abab")));
  const CUnicodeString zero(RX_TEXT("\0"), 1);
  EXPECT_EQ(UnitsOf(zero + zero), WideText(RX_TEXT("\0\0"), 2));
}

TEST(UnicodeStringTest, ExhaustionThrowsAndKeepsTheText) {
  const char* const file = "mirel/base/UnicodeString";
  const CUnicodeString other(RX_TEXT("other"));
  CUnicodeString text(RX_TEXT("abc"));
  const auto unchanged = [&] { EXPECT_EQ(UnitsOf(text), Wide(RX_TEXT("abc"))); };
  EXPECT_EQ(FailEachAllocationOf(
                file, [] { CUnicodeString made(RX_TEXT("x")); }, unchanged),
            1);
  EXPECT_EQ(FailEachAllocationOf(
                file, [] { CUnicodeString made(RX_TEXT("x"), 1); }, unchanged),
            1);
  EXPECT_EQ(FailEachAllocationOf(
                file, [&] { CUnicodeString made(other); }, unchanged),
            1);
  EXPECT_EQ(FailEachAllocationOf(
                file, [&] { text.Mid(1); }, unchanged),
            1);
  EXPECT_EQ(FailEachAllocationOf(
                file, [&] { text.Mid(9, 1); }, unchanged),
            1);
  EXPECT_EQ(FailEachAllocationOf(
                file, [&] { text + other; }, unchanged),
            1);
  EXPECT_EQ(FailEachAllocationOf(
                file, [&] { text + RX_TEXT("x"); }, unchanged),
            1);
  EXPECT_EQ(FailEachAllocationOf(
                file, [&] { RX_TEXT("x") + text; }, unchanged),
            1);
  EXPECT_EQ(FailEachAllocationOf(
                file, [&] { text.Insert(1, RX_TEXT("x")); }, unchanged),
            1);
  EXPECT_EQ(UnitsOf(text), Wide(RX_TEXT("axbc")));
  text = CUnicodeString(RX_TEXT("abc"));
  EXPECT_EQ(FailEachAllocationOf(
                file, [&] { text = other; }, unchanged),
            1);
  EXPECT_EQ(UnitsOf(text), Wide(RX_TEXT("other")));
}

}  // namespace
}  // namespace tests
