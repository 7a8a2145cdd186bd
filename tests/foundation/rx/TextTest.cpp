#include <gtest/gtest.h>
#include <rx/Text.h>

#include <cstring>
#include <string>

namespace tests {
namespace {

using WideText = std::basic_string<RX::UniChar>;

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
      if (begin != 0) text[begin - 1] = 0;  // ends another text
      ASSERT_EQ(RX::ucslen(text.c_str() + begin), length) << "from " << begin;
    }
  }
}

TEST(TextTest, ATextMayBeginAtAnOddAddress) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "the undefined-behaviour sanitizer ends a program that reads such a text";
#endif
  WideText text(40, 0x0100);  // half of each unit is zero
  for (std::size_t length = 0; length < text.size(); ++length) {
    char buffer[128];
    std::memset(buffer, 1, sizeof buffer);
    std::memcpy(buffer + 1, text.c_str() + text.size() - length, (length + 1) * sizeof(RX::UniChar));
    EXPECT_EQ(RX::ucslen(reinterpret_cast<const RX::UniChar*>(buffer + 1)), length);
  }
}

TEST(TextTest, AConstantIsTheLiteralItselfAndKnownToTheCompiler) {
  static constexpr RX::UniChar literal[] = RX_TEXT("text");
  static constexpr const RX::UniChar* constant = RX::DefineConstantUTF16CharacterOrString(literal);
  static_assert(constant == literal && constant[3] == 't' && constant[4] == 0, "made at compile time");
  EXPECT_EQ(WideText(constant), WideText(RX_TEXT("text")));
}

}  // namespace
}  // namespace tests
