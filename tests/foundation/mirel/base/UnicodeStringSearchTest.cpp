#include <gtest/gtest.h>
#include <mirel/base/UnicodeString.h>

namespace tests {
namespace {

using mirel::base::CUnicodeString;

constexpr const RX::UniChar* NullText = nullptr;

TEST(UnicodeStringSearchTest, FindReturnsTheFirstOccurrenceAtOrAfterTheStart) {
  static const struct {
    const char* name;
    const RX::UniChar* text;
    const RX::UniChar* wanted;
    unsigned int from;
    int index;
  } rows[] = {
      {"at the start", RX_TEXT("abcabc"), RX_TEXT("abc"), 0, 0},
      {"from past the first", RX_TEXT("abcabc"), RX_TEXT("abc"), 1, 3},
      {"from the very place", RX_TEXT("abcabc"), RX_TEXT("abc"), 3, 3},
      {"only a part is left", RX_TEXT("abcabc"), RX_TEXT("abc"), 4, -1},
      {"begins again inside", RX_TEXT("aab"), RX_TEXT("ab"), 0, 1},
      {"longer than the text", RX_TEXT("ab"), RX_TEXT("abc"), 0, -1},
      {"other case", RX_TEXT("abc"), RX_TEXT("ABC"), 0, -1},
      {"differs in the high byte", RX_TEXT("\u0161"), RX_TEXT("a"), 0, -1},
      {"start past the end", RX_TEXT("abc"), RX_TEXT("a"), 4, -1},
      {"start far past the end", RX_TEXT("abc"), RX_TEXT("a"), 0xFFFFFFFF, -1},
      {"empty at the start", RX_TEXT("abc"), RX_TEXT(""), 0, 0},
      {"empty inside", RX_TEXT("abc"), RX_TEXT(""), 2, 2},
      {"empty at the end", RX_TEXT("abc"), RX_TEXT(""), 3, 3},
      {"empty past the end", RX_TEXT("abc"), RX_TEXT(""), 4, -1},
      {"empty in empty", RX_TEXT(""), RX_TEXT(""), 0, 0},
      {"empty in null", NullText, RX_TEXT(""), 0, 0},
      {"in null", NullText, RX_TEXT("a"), 0, -1},
      {"null", RX_TEXT("abc"), NullText, 0, -1},
      {"null in null", NullText, NullText, 0, -1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(CUnicodeString(row.text).Find(row.wanted, row.from), row.index);
  }
}

TEST(UnicodeStringSearchTest, FindOfAUnitReturnsItsFirstOccurrence) {
  const CUnicodeString text(RX_TEXT("a b c"));
  EXPECT_EQ(text.Find(RX::UniChar(' ')), 1);
  EXPECT_EQ(text.Find(RX::UniChar(' '), 1), 1);
  EXPECT_EQ(text.Find(RX::UniChar(' '), 2), 3);
  EXPECT_EQ(text.Find(RX::UniChar(' '), 4), -1);
  EXPECT_EQ(text.Find(RX::UniChar('c'), 4), 4);
  EXPECT_EQ(text.Find(RX::UniChar('c'), 5), -1);
  EXPECT_EQ(text.Find(RX::UniChar('c'), 0xFFFFFFFF), -1);
  EXPECT_EQ(text.Find(RX::UniChar('x')), -1);
  EXPECT_EQ(text.Find(RX::UniChar(0)), -1);
  EXPECT_EQ(CUnicodeString().Find(RX::UniChar('x')), -1);
  EXPECT_EQ(CUnicodeString(RX_TEXT("a\0b"), 3).Find(RX::UniChar(0)), 1);
  EXPECT_EQ(CUnicodeString(RX_TEXT("a\0b"), 3).Find(RX_TEXT("b")), 2);
}

TEST(UnicodeStringSearchTest, EndsWithComparesTheEnd) {
  static const struct {
    const char* name;
    const RX::UniChar* text;
    const RX::UniChar* end;
    bool result;
  } rows[] = {
      {"the end", RX_TEXT("a\\b"), RX_TEXT("\\b"), true},
      {"the whole", RX_TEXT("ab"), RX_TEXT("ab"), true},
      {"inside only", RX_TEXT("abc"), RX_TEXT("b"), false},
      {"longer than the text", RX_TEXT("b"), RX_TEXT("ab"), false},
      {"other case", RX_TEXT("ab"), RX_TEXT("B"), false},
      {"empty", RX_TEXT("ab"), RX_TEXT(""), true},
      {"empty of empty", RX_TEXT(""), RX_TEXT(""), true},
      {"empty of null", NullText, RX_TEXT(""), true},
      {"of null", NullText, RX_TEXT("a"), false},
      {"null", RX_TEXT("ab"), NullText, false},
      {"null of null", NullText, NullText, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(CUnicodeString(row.text).EndsWith(row.end), row.result);
  }
}

TEST(UnicodeStringSearchTest, TextsAreEqualWhenTheirUnitsAre) {
  static const struct {
    const char* name;
    const RX::UniChar* left;
    const RX::UniChar* right;
    bool equal;
  } rows[] = {
      {"same units", RX_TEXT("abc"), RX_TEXT("abc"), true},
      {"other unit", RX_TEXT("abc"), RX_TEXT("abd"), false},
      {"other case", RX_TEXT("abc"), RX_TEXT("abC"), false},
      {"differs in the high byte", RX_TEXT("a"), RX_TEXT("\u0161"), false},
      {"beginning", RX_TEXT("ab"), RX_TEXT("abc"), false},
      {"empty and text", RX_TEXT(""), RX_TEXT("a"), false},
      {"null and text", NullText, RX_TEXT("a"), false},
      {"null and empty", NullText, RX_TEXT(""), true},
      {"null and null", NullText, NullText, true},
      {"empty and empty", RX_TEXT(""), RX_TEXT(""), true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const CUnicodeString left(row.left);
    const CUnicodeString right(row.right);
    EXPECT_EQ(left == right, row.equal);
    EXPECT_EQ(right == left, row.equal);
    EXPECT_EQ(left == row.right, row.equal);
    EXPECT_EQ(row.left == right, row.equal);
    EXPECT_EQ(left != right, !row.equal);
    EXPECT_EQ(left != row.right, !row.equal);
    EXPECT_EQ(row.left != right, !row.equal);
  }
}

TEST(UnicodeStringSearchTest, UnitsAfterAZeroCountForEquality) {
  const CUnicodeString text(RX_TEXT("a\0b"), 3);
  EXPECT_TRUE(text == CUnicodeString(RX_TEXT("a\0b"), 3));
  EXPECT_FALSE(text == CUnicodeString(RX_TEXT("a\0c"), 3));
  EXPECT_FALSE(text == RX_TEXT("a"));
}

}  // namespace
}  // namespace tests
