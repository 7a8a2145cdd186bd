#include <gtest/gtest.h>
#include <rx/Text.h>

#include <climits>

namespace tests {
namespace {

constexpr int Untouched = -12345;

// What one "%d" stores and what the scan returns.
TEST(ScanTest, DecimalNumbersAreReadAsTheCLibraryReadsThem) {
  static const struct {
    const char* name;
    const RX::UniChar* text;
    const RX::UniChar* format;
    int result;
    int value;
  } rows[] = {
      {"a number", RX_TEXT("42"), RX_TEXT("%d"), 1, 42},
      {"zero", RX_TEXT("0"), RX_TEXT("%d"), 1, 0},
      {"leading zeros are decimal", RX_TEXT("0017"), RX_TEXT("%d"), 1, 17},
      {"minus", RX_TEXT("-7"), RX_TEXT("%d"), 1, -7},
      {"plus", RX_TEXT("+7"), RX_TEXT("%d"), 1, 7},
      {"leading white space", RX_TEXT(" \t\n\v\f\r7"), RX_TEXT("%d"), 1, 7},
      {"text after the number", RX_TEXT("6.0_45"), RX_TEXT("%d"), 1, 6},
      {"largest", RX_TEXT("2147483647"), RX_TEXT("%d"), 1, INT_MAX},
      {"above the largest", RX_TEXT("2147483648"), RX_TEXT("%d"), 1, INT_MAX},
      {"smallest", RX_TEXT("-2147483648"), RX_TEXT("%d"), 1, INT_MIN},
      {"below the smallest", RX_TEXT("-2147483649"), RX_TEXT("%d"), 1, INT_MIN},
      {"far above 64 bits", RX_TEXT("123456789012345678901234567890"), RX_TEXT("%d"), 1, INT_MAX},
      {"far below 64 bits", RX_TEXT("-123456789012345678901234567890"), RX_TEXT("%d"), 1, INT_MIN},
      {"a multiple of 2 to the 64th", RX_TEXT("18446744073709551616"), RX_TEXT("%d"), 1, INT_MAX},
      {"no number", RX_TEXT("abc"), RX_TEXT("%d"), 0, Untouched},
      {"a sign alone", RX_TEXT("-"), RX_TEXT("%d"), 0, Untouched},
      {"two signs", RX_TEXT("+-1"), RX_TEXT("%d"), 0, Untouched},
      {"a digit that is not ASCII", RX_TEXT("\u0661"), RX_TEXT("%d"), 0, Untouched},
      {"a unit whose low byte is a digit", RX_TEXT("\u0131"), RX_TEXT("%d"), 0, Untouched},
      {"empty text", RX_TEXT(""), RX_TEXT("%d"), -1, Untouched},
      {"white space only", RX_TEXT("  "), RX_TEXT("%d"), -1, Untouched},
      {"white space only, before a space", RX_TEXT("  "), RX_TEXT(" %d"), -1, Untouched},
      {"width", RX_TEXT("12345"), RX_TEXT("%3d"), 1, 123},
      {"width of two digits", RX_TEXT("123456789012"), RX_TEXT("%10d"), 1, 1234567890},
      {"width counts the sign", RX_TEXT("-12"), RX_TEXT("%2d"), 1, -1},
      {"width used up by the sign", RX_TEXT("-12"), RX_TEXT("%1d"), 0, Untouched},
      {"width does not count white space", RX_TEXT("   12"), RX_TEXT("%2d"), 1, 12},
      {"width beyond all numbers", RX_TEXT("12"), RX_TEXT("%99999999999999999999999999d"), 1, 12},
      {"literals", RX_TEXT("a.12"), RX_TEXT("a.%d"), 1, 12},
      {"literals that differ", RX_TEXT("b.12"), RX_TEXT("a.%d"), 0, Untouched},
      {"text ends in a literal", RX_TEXT("a"), RX_TEXT("a.%d"), -1, Untouched},
      {"space in the format is any white space", RX_TEXT("a \t\n12"), RX_TEXT("a %d"), 1, 12},
      {"space in the format is none, too", RX_TEXT("a12"), RX_TEXT("a %d"), 1, 12},
      {"white space before a literal must be asked for", RX_TEXT(" a12"), RX_TEXT("a%d"), 0, Untouched},
      {"percent sign", RX_TEXT("%12"), RX_TEXT("%%%d"), 1, 12},
      {"percent sign after white space", RX_TEXT(" %12"), RX_TEXT("%%%d"), 1, 12},
      {"percent sign missing", RX_TEXT("12"), RX_TEXT("%%%d"), 0, Untouched},
      {"read and forget", RX_TEXT("1 2"), RX_TEXT("%*d%d"), 1, 2},
      {"read and forget the only one", RX_TEXT("1"), RX_TEXT("%*d"), 0, Untouched},
      {"read and forget, then the end", RX_TEXT("1"), RX_TEXT("%*d%d"), 0, Untouched},
      {"read and forget with width", RX_TEXT("12345"), RX_TEXT("%*2d%d"), 1, 345},
      {"unknown conversion", RX_TEXT("12"), RX_TEXT("%q%d"), 0, Untouched},
      {"format ends in a percent sign", RX_TEXT("12"), RX_TEXT("%"), 0, Untouched},
      {"empty format", RX_TEXT("12"), RX_TEXT(""), 0, Untouched},
      {"empty format and text", RX_TEXT(""), RX_TEXT(""), 0, Untouched},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    int value = Untouched;
    EXPECT_EQ(RX::suscanf(row.text, row.format, &value), row.result);
    EXPECT_EQ(value, row.value);
  }
}

TEST(ScanTest, UnsignedAndHexadecimalNumbersStayInRange) {
  static const struct {
    const char* name;
    const RX::UniChar* text;
    const RX::UniChar* format;
    int result;
    unsigned int value;
  } rows[] = {
      {"unsigned", RX_TEXT("42"), RX_TEXT("%u"), 1, 42},
      {"unsigned, largest", RX_TEXT("4294967295"), RX_TEXT("%u"), 1, UINT_MAX},
      {"unsigned, above the largest", RX_TEXT("4294967296"), RX_TEXT("%u"), 1, UINT_MAX},
      {"unsigned, below zero", RX_TEXT("-1"), RX_TEXT("%u"), 1, 0},
      {"unsigned reads no letters", RX_TEXT("1f"), RX_TEXT("%u"), 1, 1},
      {"hexadecimal", RX_TEXT("1aF"), RX_TEXT("%x"), 1, 0x1AF},
      {"hexadecimal with prefix", RX_TEXT("0x1f"), RX_TEXT("%x"), 1, 0x1F},
      {"hexadecimal with capital prefix", RX_TEXT("0X1F"), RX_TEXT("%x"), 1, 0x1F},
      {"hexadecimal with sign and prefix", RX_TEXT("+0x1f"), RX_TEXT("%x"), 1, 0x1F},
      {"a prefix without digits is a zero", RX_TEXT("0xg"), RX_TEXT("%x"), 1, 0},
      {"a prefix cut off by the width", RX_TEXT("0x1"), RX_TEXT("%2x"), 1, 0},
      {"hexadecimal with width", RX_TEXT("0x12"), RX_TEXT("%3x"), 1, 1},
      {"hexadecimal, largest", RX_TEXT("ffffffff"), RX_TEXT("%x"), 1, UINT_MAX},
      {"hexadecimal, above the largest", RX_TEXT("100000000"), RX_TEXT("%x"), 1, UINT_MAX},
      {"hexadecimal, far above 64 bits", RX_TEXT("ffffffffffffffffffff"), RX_TEXT("%x"), 1, UINT_MAX},
      {"not hexadecimal", RX_TEXT("g"), RX_TEXT("%x"), 0, 7},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    unsigned int value = 7;
    EXPECT_EQ(RX::suscanf(row.text, row.format, &value), row.result);
    EXPECT_EQ(value, row.value);
  }
}

TEST(ScanTest, SeveralValuesAreStoredInOrderUntilOneDoesNotMatch) {
  int major = Untouched;
  int minor = Untouched;
  unsigned int update = 7;
  EXPECT_EQ(RX::suscanf(RX_TEXT("1.6.0_1f"), RX_TEXT("%d.%d.0_%x"), &major, &minor, &update), 3);
  EXPECT_EQ(major, 1);
  EXPECT_EQ(minor, 6);
  EXPECT_EQ(update, 0x1Fu);

  minor = Untouched;
  EXPECT_EQ(RX::suscanf(RX_TEXT("8.x"), RX_TEXT("%d.%d"), &major, &minor), 1);
  EXPECT_EQ(major, 8);
  EXPECT_EQ(minor, Untouched);

  EXPECT_EQ(RX::suscanf(RX_TEXT("9"), RX_TEXT("%d.%d"), &major, &minor), 1);
  EXPECT_EQ(major, 9);
  EXPECT_EQ(minor, Untouched);
}

}  // namespace
}  // namespace tests
