#include "platform/linux/FileSystemText.h"

#include <gtest/gtest.h>

namespace tests {
namespace {

using torvan::platform::FromUtf8;

TEST(FileSystemTextTest, Utf8BecomesUtf16) {
  EXPECT_TRUE(FromUtf8("") == u"");
  EXPECT_NE(nullptr, static_cast<const char16_t*>(FromUtf8("")));
  EXPECT_TRUE(FromUtf8("a\x7F\xC2\x80\xDF\xBF") == u"a\x7F\x80\x7FF");
  EXPECT_TRUE(FromUtf8("\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF") == u"\x800\xD7FF\xE000\xFFFF");
  EXPECT_TRUE(FromUtf8("\xF0\x90\x80\x80\xF4\x8F\xBF\xBF") == u"\xD800\xDC00\xDBFF\xDFFF");
}

TEST(FileSystemTextTest, NullAndWhatIsNotUtf8IsNull) {
  const char* const texts[] = {
      nullptr,
      "a\x80",             // a follower alone
      "\xC3",              // cut
      "\xC3(",             // no follower
      "\xE2\x82",          // cut
      "\xF0\x90\x80",      // cut
      "\xC0\xAF",          // longer than its character needs
      "\xE0\x9F\xBF",      // too long
      "\xF0\x8F\xBF\xBF",  // too long
      "\xED\xA0\x80",      // a surrogate
      "\xED\xBF\xBF",      // a surrogate
      "\xF4\x90\x80\x80",  // past the last character
      "\xF8\x88\x80\x80\x80",
      "\xFF",
  };
  for (const char* text : texts) {
    EXPECT_EQ(nullptr, static_cast<const char16_t*>(FromUtf8(text))) << testing::PrintToString(text);
  }
}

}  // namespace
}  // namespace tests
