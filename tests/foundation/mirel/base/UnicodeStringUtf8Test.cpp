#include <gtest/gtest.h>
#include <mirel/base/UnicodeString.h>

#include <string>

#include "foundation/MemoryFailures.h"
#include "foundation/mirel/Units.h"

namespace tests {
namespace {

using mirel::base::CString;
using mirel::base::CUnicodeString;

struct Row {
  const char* name;
  CUnicodeString text;
  std::string utf8;
};

// Units that a literal cannot hold on its own.
CUnicodeString TextOf(std::initializer_list<int> units) {
  WideText text;
  for (const int unit : units) text += static_cast<RX::UniChar>(unit);
  return CUnicodeString(text.c_str(), static_cast<unsigned int>(text.size()));
}

const Row s_rows[] = {
    {"empty", CUnicodeString(RX_TEXT("")), ""},
    {"ASCII", CUnicodeString(RX_TEXT("-Dx=y z")), "-Dx=y z"},
    {"last of 1 byte", TextOf({0x7F}), "\x7F"},
    {"first of 2 bytes", TextOf({0x80}), "\xC2\x80"},
    {"umlaut", CUnicodeString(RX_TEXT("a\u00e4o")), "a\xC3\xA4o"},
    {"last of 2 bytes", TextOf({0x7FF}), "\xDF\xBF"},
    {"first of 3 bytes", TextOf({0x800}), "\xE0\xA0\x80"},
    {"euro", CUnicodeString(RX_TEXT("\u20ac")), "\xE2\x82\xAC"},
    {"last before the surrogates", TextOf({0xD7FF}), "\xED\x9F\xBF"},
    {"first after the surrogates", TextOf({0xE000}), "\xEE\x80\x80"},
    {"last of 3 bytes", TextOf({0xFFFF}), "\xEF\xBF\xBF"},
    {"first pair", TextOf({0xD800, 0xDC00}), "\xF0\x90\x80\x80"},
    {"a pair", CUnicodeString(RX_TEXT("x\U0001F600y")), "x\xF0\x9F\x98\x80y"},
    {"last pair", TextOf({0xDBFF, 0xDFFF}), "\xF4\x8F\xBF\xBF"},
    {"two pairs", TextOf({0xD83D, 0xDE00, 0xD83D, 0xDE00}), "\xF0\x9F\x98\x80\xF0\x9F\x98\x80"},
    {"high surrogate at the end", TextOf({'a', 0xD800}), "a\xEF\xBF\xBD"},
    {"high surrogate before a letter", TextOf({0xDBFF, 'a'}),
     "\xEF\xBF\xBD"
     "a"},
    {"low surrogate alone", TextOf({0xDC00, 'a'}),
     "\xEF\xBF\xBD"
     "a"},
    {"surrogates in the wrong order", TextOf({0xDFFF, 0xD800}), "\xEF\xBF\xBD\xEF\xBF\xBD"},
    {"high surrogate before a pair", TextOf({0xD800, 0xD83D, 0xDE00}), "\xEF\xBF\xBD\xF0\x9F\x98\x80"},
    {"low surrogate after a pair", TextOf({0xD83D, 0xDE00, 0xDE00}), "\xF0\x9F\x98\x80\xEF\xBF\xBD"},
    {"all lengths", CUnicodeString(RX_TEXT("a\u00e4\u20ac\U0001F600z")), "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80z"},
    {"a zero inside", TextOf({'a', 0, 'b'}), std::string("a\0b", 3)},
};

// The longest prefix of `utf8` in whole characters that leaves room for a zero.
std::string CutTo(const std::string& utf8, std::size_t size) {
  std::size_t length = utf8.size() < size ? utf8.size() : size - 1;
  while (length < utf8.size() && (utf8[length] & 0xC0) == 0x80) --length;
  return utf8.substr(0, length);
}

TEST(UnicodeStringUtf8Test, TextIsReturnedAsStandardUtf8) {
  for (const Row& row : s_rows) {
    SCOPED_TRACE(row.name);
    const CString utf8 = row.text.ToUTF8();
    const char* const bytes = utf8;
    ASSERT_NE(bytes, nullptr);
    EXPECT_EQ(std::string(bytes, row.utf8.size() + 1), row.utf8 + '\0');
  }
}

TEST(UnicodeStringUtf8Test, NullTextReturnsNullAndCountsAsEmptyForABuffer) {
  const CUnicodeString null;
  const CString utf8 = null.ToUTF8();
  EXPECT_EQ(static_cast<const char*>(utf8), nullptr);
  EXPECT_EQ(null.ToUTF8(nullptr, 0), 1);
  char buffer[] = "xx";
  EXPECT_EQ(null.ToUTF8(buffer, 2), 1);
  EXPECT_EQ(std::string(buffer, 2), std::string("\0x", 2));
}

TEST(UnicodeStringUtf8Test, ANullBufferAsksForTheBytesNeededAndTheSizeIsNotRead) {
  for (const Row& row : s_rows) {
    SCOPED_TRACE(row.name);
    for (const int size : {0, 1, 1000, -1}) {
      EXPECT_EQ(row.text.ToUTF8(nullptr, size), static_cast<int>(row.utf8.size() + 1));
    }
  }
}

TEST(UnicodeStringUtf8Test, ABufferOfAnySizeGetsWholeCharactersAndAZeroAndNothingAfterItIsWritten) {
  for (const Row& row : s_rows) {
    SCOPED_TRACE(row.name);
    const std::size_t needed = row.utf8.size() + 1;
    for (std::size_t size = 1; size <= needed + 3; ++size) {
      SCOPED_TRACE(size);
      std::string buffer(needed + 8, '#');
      EXPECT_EQ(row.text.ToUTF8(buffer.data(), static_cast<int>(size)), static_cast<int>(needed));
      const std::string written = CutTo(row.utf8, size) + '\0';
      EXPECT_EQ(buffer, written + std::string(buffer.size() - written.size(), '#'));
    }
  }
}

TEST(UnicodeStringUtf8Test, ACharacterThatFitsIsNotWrittenAfterOneThatDidNot) {
  std::string buffer(8, '#');
  EXPECT_EQ(CUnicodeString(RX_TEXT("a\u20acb")).ToUTF8(buffer.data(), 4), 6);
  EXPECT_EQ(buffer, std::string("a\0######", 8));
}

TEST(UnicodeStringUtf8Test, ABufferWithoutRoomIsNotWrittenTo) {
  for (const int size : {0, -1, -1000}) {
    std::string buffer(4, '#');
    EXPECT_EQ(CUnicodeString(RX_TEXT("a\u00e4")).ToUTF8(buffer.data(), size), 4) << size;
    EXPECT_EQ(buffer, "####");
  }
}

TEST(UnicodeStringUtf8Test, ExhaustionThrowsAndTheBufferFormNeedsNoMemory) {
  const CUnicodeString text(RX_TEXT("a\u00e4"));
  EXPECT_EQ(FailEachAllocationOf(
                "mirel/base/UnicodeStringUtf8", [&] { text.ToUTF8(); }, [] {}),
            1);
  Allocations allocations;
  char buffer[8];
  EXPECT_EQ(text.ToUTF8(buffer, 8), 4);
  EXPECT_EQ(allocations.Made(), 0);
}

}  // namespace
}  // namespace tests
