#include <gtest/gtest.h>
#include <mirel/util/HashCode.h>

namespace tests {
namespace {

TEST(HashCodeTest, ATextIsHashedByPowersOf31In32Bits) {
  static const struct {
    const char* name;
    const RX::UniChar* text;
    int hash;
  } rows[] = {
      {"null", nullptr, 0},
      {"empty", RX_TEXT(""), 0},
      {"one unit", RX_TEXT("a"), 97},
      {"two units", RX_TEXT("ab"), 97 * 31 + 98},
      {"order counts", RX_TEXT("ba"), 98 * 31 + 97},
      {"a unit above 127", RX_TEXT("\u00e4"), 228},
      {"a unit above 32767", RX_TEXT("\uffef"), 65519},
      {"wraps to the smallest", RX_TEXT("polygenelubricants"), -2147483647 - 1},
      {"wraps to negative", RX_TEXT("jvm.dll"), -1228484073},
      {"wraps to positive", RX_TEXT("C:\\jre\\bin\\jvm.dll"), 1661171070},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(mirel::util::GetCUnicodeStringHashCode(mirel::base::CUnicodeString(row.text)), row.hash);
  }
}

TEST(HashCodeTest, AZeroUnitCounts) {
  EXPECT_EQ(mirel::util::GetCUnicodeStringHashCode(mirel::base::CUnicodeString(RX_TEXT("a\0"), 2)), 97 * 31);
}

}  // namespace
}  // namespace tests
