#include "jni/JniText.h"

#include <gtest/gtest.h>
#include <mirel/base/MemoryException.h>

#include <string>

#include "fakes/Allocations.h"
#include "fakes/Failure.h"
#include "fakes/WideText.h"

namespace tests {

using namespace torvan::jni;

namespace {

using mirel::base::CMemoryException;

TEST(JniTextTest, NarrowTextPassesThrough) {
  const Allocations allocations;
  const char* const text = "java/lang/String";
  EXPECT_EQ(static_cast<const char*>(CJniText(text)), text);
  EXPECT_EQ(static_cast<const char*>(CJniText(static_cast<const char*>(nullptr))), nullptr);
  EXPECT_EQ(allocations.Made(), 0);
}

TEST(JniTextTest, NullWideTextStaysNull) {
  EXPECT_EQ(static_cast<const char*>(CJniText(static_cast<const RX::UniChar*>(nullptr))), nullptr);
}

struct WideRow {
  const char* name;
  std::string text;
  bool heap;
};

class JniTextWideTest : public testing::TestWithParam<WideRow> {};

TEST_P(JniTextWideTest, WideTextBecomesUtf8) {
  const WideText wide = Widen(GetParam().text);
  const Allocations allocations;
  {
    const CJniText text(wide.c_str());
    EXPECT_STREQ(text, GetParam().text.c_str());
  }
  EXPECT_EQ(allocations.Made() != 0, GetParam().heap);
  EXPECT_EQ(allocations.Live(), 0u);
}

INSTANTIATE_TEST_SUITE_P(Texts, JniTextWideTest,
                         testing::Values(WideRow{"Empty", "", false}, WideRow{"Ascii", "java/lang/String", false},
                                         WideRow{"LastAsciiUnit", "\x7F", false},
                                         WideRow{"FirstUnitAfterAscii", "\xC2\x80", true},
                                         WideRow{"AsciiThenOthers", "a/\xC3\x84\xE2\x82\xAC", true},
                                         WideRow{"BeyondTheBasicPlane", "a/\xF0\x9D\x84\x9E", true},
                                         WideRow{"LongestShort", std::string(127, 'x'), false},
                                         WideRow{"ShortestLong", std::string(128, 'x'), true},
                                         WideRow{"Long", std::string(1000, 'x'), true}),
                         [](const auto& row) { return row.param.name; });

TEST(JniTextTest, EveryUnitOfAShortTextCounts) {
  const WideText letters = RX_TEXT("abcdefghijklmnopqrs");
  for (std::size_t length = 1; length <= letters.size(); ++length) {
    const WideText wide = letters.substr(0, length);
    EXPECT_EQ(static_cast<const char*>(CJniText(wide.c_str())), std::string("abcdefghijklmnopqrs", length));
    for (std::size_t place = 0; place < length; ++place) {
      struct Unit {
        RX::UniChar wide;
        const char* utf8;
      };
      for (const auto& [unit, utf8] : {Unit{0x7F, "\x7F"}, Unit{0x80, "\xC2\x80"}, Unit{0x100, "\xC4\x80"}}) {
        WideText other = wide;
        other[place] = unit;
        std::string expected("abcdefghijklmnopqrs", length);
        expected.replace(place, 1, utf8);
        EXPECT_EQ(static_cast<const char*>(CJniText(other.c_str())), expected);
      }
    }
  }
}

TEST(JniTextTest, WideTextThatDoesNotFitNeedsMemory) {
  const WideText wide(200, RX_TEXT('x'));
  const int failures = FailEachAllocation(
      [&] {
        try {
          const CJniText text(wide.c_str());
          EXPECT_STREQ(text, std::string(200, 'x').c_str());
        } catch (const CMemoryException& exception) {
          EXPECT_EQ(exception.GetMessageText(), nullptr);
        }
      },
      [](int, const Allocations& allocations) { EXPECT_EQ(allocations.Live(), 0u); });
  EXPECT_GE(failures, 1);
}

}  // namespace

}  // namespace tests
