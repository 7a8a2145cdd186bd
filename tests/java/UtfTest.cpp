#include <gtest/gtest.h>
#include <torvan/java/Failure.h>
#include <torvan/java/detail/Utf.h>

#include <string>
#include <string_view>

#include "ThreadSanitizer.h"

namespace tests {
namespace {

using namespace torvan::java;
using namespace torvan::java::detail;

using namespace std::string_literals;
using namespace std::string_view_literals;

std::string Refusal(std::string_view text) {
  try {
    return "accepted, " + std::to_string(ToUtf16(text).size()) + " units";
  } catch (const Misuse& misuse) {
    EXPECT_STREQ(misuse.GetSourceFile(), "java/Utf");
    return misuse.what();
  }
}

// The UTF-8 of one character, made by the definition.
std::string Encoded(char32_t c) {
  const auto tail = [c](int shift) { return static_cast<char>(0x80 | (c >> shift & 0x3F)); };
  if (c < 0x80) return {static_cast<char>(c)};
  if (c < 0x800) return {static_cast<char>(0xC0 | c >> 6), tail(0)};
  if (c < 0x10000) return {static_cast<char>(0xE0 | c >> 12), tail(6), tail(0)};
  return {static_cast<char>(0xF0 | c >> 18), tail(12), tail(6), tail(0)};
}

std::u16string Units(char32_t c) {
  if (c < 0x10000) return {static_cast<char16_t>(c)};
  return {static_cast<char16_t>(0xD7C0 + (c >> 10)), static_cast<char16_t>(0xDC00 | (c & 0x3FF))};
}

TEST(UtfTest, EveryCharacterGoesBothWays) {
  SKIP_AMOUNT_WITH_THREAD_SANITIZER();
  for (char32_t c = 0; c <= 0x10FFFF; ++c) {
    if (c >= 0xD800 && c < 0xE000) continue;
    ASSERT_EQ(ToUtf16(Encoded(c)), Units(c)) << std::hex << static_cast<unsigned>(c);
    ASSERT_EQ(ToUtf8(Units(c)), Encoded(c)) << std::hex << static_cast<unsigned>(c);
  }
}

// Around the eight that are taken at a time, and the thousand that are buffered.
TEST(UtfTest, TheFastWayEndsAtTheRightUnit) {
  SKIP_AMOUNT_WITH_THREAD_SANITIZER();
  for (const std::size_t size : {0u, 1u, 7u, 8u, 9u, 15u, 16u, 17u, 31u, 1023u, 1024u, 1025u, 2049u}) {
    for (const char32_t c : {U'a', U'\0', U'\x7F', U'\x80', U'ÿ', U'中', U'\U0001F600'}) {
      for (std::size_t at = 0; at <= size; at = at < 20 || at >= 1000 ? at + 1 : 1000) {
        const std::string text = std::string(at, 'x') + Encoded(c) + std::string(size - at, '~');
        const std::u16string units = std::u16string(at, u'x') + Units(c) + std::u16string(size - at, u'~');
        ASSERT_EQ(ToUtf16(text), units) << size << " " << at;
        ASSERT_EQ(ToUtf8(units), text) << size << " " << at;
        ASSERT_EQ(IsPlainAscii(text), c != 0 && c < 0x80) << size << " " << at;
      }
    }
  }
}

TEST(UtfTest, LoneSurrogatesBecomeTheReplacementCharacter) {
  const std::string bad = "\xEF\xBF\xBD";
  EXPECT_EQ(ToUtf8(u"\xD800"sv), bad);
  EXPECT_EQ(ToUtf8(u"\xDC00"sv), bad);
  EXPECT_EQ(ToUtf8(u"\xDBFF\xDBFF\xDFFF"sv), bad + "\xF4\x8F\xBF\xBF");
  EXPECT_EQ(ToUtf8(u"\xDFFF\xD800x"sv), bad + bad + "x");
  EXPECT_EQ(ToUtf8(std::u16string(1023, u'x') + u"\xD83D\xDE00"), std::string(1023, 'x') + "\xF0\x9F\x98\x80");
  EXPECT_EQ(ToUtf8(std::u16string(1023, u'x') + u"\xD83D"), std::string(1023, 'x') + bad);
}

TEST(UtfTest, InvalidUtf8IsRefusedWithItsByte) {
  EXPECT_EQ(Refusal("\x80"), "invalid UTF-8 at byte 0");
  EXPECT_EQ(Refusal("abc\xFF"), "invalid UTF-8 at byte 3");
  EXPECT_EQ(Refusal("0123456789abcdef\xC3"), "invalid UTF-8 at byte 16");
  EXPECT_EQ(Refusal("\xC3\xA4\xC3("), "invalid UTF-8 at byte 2");
  EXPECT_EQ(Refusal("\xC0\x80"), "invalid UTF-8 at byte 0");           // Java's own form of NUL
  EXPECT_EQ(Refusal("\xC1\xBF"), "invalid UTF-8 at byte 0");           // overlong
  EXPECT_EQ(Refusal("x\xE0\x9F\xBF"), "invalid UTF-8 at byte 1");      // overlong
  EXPECT_EQ(Refusal("x\xF0\x8F\xBF\xBF"), "invalid UTF-8 at byte 1");  // overlong
  EXPECT_EQ(Refusal("\xED\xA0\x80"), "invalid UTF-8 at byte 0");       // a surrogate
  EXPECT_EQ(Refusal("\xF4\x90\x80\x80"), "invalid UTF-8 at byte 0");   // beyond U+10FFFF
  EXPECT_EQ(Refusal("\xF5\x80\x80\x80"), "invalid UTF-8 at byte 0");
  EXPECT_EQ(Refusal("\xE4\xB8"), "invalid UTF-8 at byte 0");
  EXPECT_EQ(Refusal("\xF0\x9F\x98"), "invalid UTF-8 at byte 0");
  EXPECT_EQ(Refusal("\xE4\xB8"
                    "x"),
            "invalid UTF-8 at byte 0");
  EXPECT_EQ(Refusal("\xF0\x9F\x98\xC0"), "invalid UTF-8 at byte 0");
  EXPECT_EQ(Refusal("\xED\x9F\xBF"), "accepted, 1 units");
  EXPECT_EQ(Refusal("\xF4\x8F\xBF\xBF"), "accepted, 2 units");
}

TEST(UtfTest, ModifiedUtf8HasNoZeroByteAndNoPairs) {
  EXPECT_EQ(ToModifiedUtf8(u"a\0ä\xD83D\xDE00"sv), "a\xC0\x80\xC3\xA4\xED\xA0\xBD\xED\xB8\x80");
}

TEST(UtfTest, EveryTwoBytesAreTakenOrRefusedAsTheyShould) {
  for (unsigned first = 0; first < 256; ++first) {
    for (unsigned second = 0; second < 256; ++second) {
      const std::string text{static_cast<char>(first), static_cast<char>(second)};
      const bool valid =
          first < 0x80 ? second < 0x80 : first >= 0xC2 && first < 0xE0 && second >= 0x80 && second < 0xC0;
      const std::string place = first < 0x80 ? "1" : "0";
      const std::string units = first < 0x80 ? "2" : "1";
      ASSERT_EQ(Refusal(text), valid ? "accepted, " + units + " units" : "invalid UTF-8 at byte " + place);
    }
  }
}

}  // namespace
}  // namespace tests
