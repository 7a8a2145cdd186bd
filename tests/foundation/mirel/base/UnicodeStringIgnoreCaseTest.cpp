#include <gtest/gtest.h>
#include <mirel/base/UnicodeString.h>

#include <map>
#include <vector>

#include "foundation/mirel/Units.h"

namespace tests {
namespace {

using mirel::base::CUnicodeString;

// Each capital letter has the index of its small one.
const struct {
  const char* name;
  WideText capitals;
  WideText smalls;
} s_alphabets[] = {
    // clang-format off
    {"ASCII",
     RX_TEXT("ABCDEFGHIJKLMNOPQRSTUVWXYZ"),
     RX_TEXT("abcdefghijklmnopqrstuvwxyz")},
    {"Latin-1",
     RX_TEXT("ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖØÙÚÛÜÝÞ"),
     RX_TEXT("àáâãäåæçèéêëìíîïðñòóôõöøùúûüýþ")},
    {"Latin Extended-A, beginning",
     RX_TEXT("ĀĂĄĆĈĊČĎĐĒĔĖĘĚĜĞĠĢĤĦĨĪĬĮĲĴĶĹĻĽĿ"),
     RX_TEXT("āăąćĉċčďđēĕėęěĝğġģĥħĩīĭįĳĵķĺļľŀ")},
    {"Latin Extended-A, rest",
     RX_TEXT("ŁŃŅŇŊŌŎŐŒŔŖŘŚŜŞŠŢŤŦŨŪŬŮŰŲŴŶŸŹŻŽ"),
     RX_TEXT("łńņňŋōŏőœŕŗřśŝşšţťŧũūŭůűųŵŷÿźżž")},
    {"Greek, beginning",
     RX_TEXT("ͰͲͶͿΆΈΉΊΌΎΏΑΒΓΔΕΖΗΘΙΚΛΜΝΞΟΠΡ"),
     RX_TEXT("ͱͳͷϳάέήίόύώαβγδεζηθικλμνξοπρ")},
    {"Greek, rest",
     RX_TEXT("ΣΤΥΦΧΨΩΪΫϏϘϚϜϞϠϢϤϦϨϪϬϮϷϹϺϽϾϿ"),
     RX_TEXT("στυφχψωϊϋϗϙϛϝϟϡϣϥϧϩϫϭϯϸϲϻͻͼͽ")},
    {"Cyrillic, beginning",
     RX_TEXT("ЀЁЂЃЄЅІЇЈЉЊЋЌЍЎЏАБВГДЕЖЗ"),
     RX_TEXT("ѐёђѓєѕіїјљњћќѝўџабвгдежз")},
    {"Cyrillic, rest",
     RX_TEXT("ИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯ"),
     RX_TEXT("ийклмнопрстуфхцчшщъыьэюя")},
    {"historic Cyrillic, beginning",
     RX_TEXT("ѠѢѤѦѨѪѬѮѰѲѴѶѸѺѼѾҀҊҌҎҐҒҔҖҘҚҜҞҠҢҤҦҨҪҬҮҰҲ"),
     RX_TEXT("ѡѣѥѧѩѫѭѯѱѳѵѷѹѻѽѿҁҋҍҏґғҕҗҙқҝҟҡңҥҧҩҫҭүұҳ")},
    {"historic Cyrillic, rest",
     RX_TEXT("ҴҶҸҺҼҾӀӁӃӅӇӉӋӍӐӒӔӖӘӚӜӞӠӢӤӦӨӪӬӮӰӲӴӶӸӺӼӾ"),
     RX_TEXT("ҵҷҹһҽҿӏӂӄӆӈӊӌӎӑӓӕӗәӛӝӟӡӣӥӧөӫӭӯӱӳӵӷӹӻӽӿ")},
    // clang-format on
};

int Compare(const RX::UniChar* left, const RX::UniChar* right) {
  return CUnicodeString(left).CompareIgnoreCase(CUnicodeString(right));
}

TEST(UnicodeStringIgnoreCaseTest, CapitalAndSmallLettersOfAnAlphabetAreEqual) {
  for (const auto& alphabet : s_alphabets) {
    SCOPED_TRACE(alphabet.name);
    ASSERT_EQ(alphabet.capitals.size(), alphabet.smalls.size());
    EXPECT_EQ(Compare(alphabet.capitals.c_str(), alphabet.smalls.c_str()), 0);
    EXPECT_EQ(Compare(alphabet.smalls.c_str(), alphabet.capitals.c_str()), 0);
  }
}

// Every unit is compared with every unit of the blocks that hold letters with pairs.
TEST(UnicodeStringIgnoreCaseTest, NoOtherUnitsAreEqual) {
  std::map<RX::UniChar, RX::UniChar> partners;
  for (const auto& alphabet : s_alphabets) {
    for (std::size_t i = 0; i < alphabet.capitals.size(); ++i) {
      partners[alphabet.capitals[i]] = alphabet.smalls[i];
      partners[alphabet.smalls[i]] = alphabet.capitals[i];
    }
  }
  std::vector<CUnicodeString> letters;
  for (unsigned int unit = 0; unit < 0x600; ++unit) {
    const auto letter = static_cast<RX::UniChar>(unit);
    letters.emplace_back(&letter, 1u);
  }
  for (unsigned int unit = 0; unit < 0x10000; unit += unit < 0x800 ? 1 : 0x3F) {
    const auto letter = static_cast<RX::UniChar>(unit);
    const CUnicodeString text(&letter, 1);
    for (unsigned int other = 0; other < letters.size(); ++other) {
      const auto partner = partners.find(letter);
      const bool equal =
          unit == other || (partner != partners.end() && partner->second == static_cast<RX::UniChar>(other));
      ASSERT_EQ(text.CompareIgnoreCase(letters[other]) == 0, equal) << std::hex << unit << " and " << other;
    }
  }
}

TEST(UnicodeStringIgnoreCaseTest, TheResultOrdersTextsByTheirSmallLetters) {
  static const struct {
    const char* name;
    const RX::UniChar* less;
    const RX::UniChar* more;
  } rows[] = {
      {"letters", RX_TEXT("abc"), RX_TEXT("ABD")},
      {"letters, capitals first", RX_TEXT("ABC"), RX_TEXT("abd")},
      {"a beginning", RX_TEXT("AB"), RX_TEXT("abc")},
      {"empty", RX_TEXT(""), RX_TEXT("a")},
      {"null", nullptr, RX_TEXT("a")},
      {"underline is before small letters", RX_TEXT("_"), RX_TEXT("A")},
      {"first difference decides", RX_TEXT("aZ"), RX_TEXT("Ba")},
      {"units, not signed numbers", RX_TEXT("a"), RX_TEXT("\uffef")},
      {"sharp s is not ss", RX_TEXT("ss"), RX_TEXT("\u00df")},
      {"dotless i is not i", RX_TEXT("i"), RX_TEXT("\u0131")},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_LT(Compare(row.less, row.more), 0);
    EXPECT_GT(Compare(row.more, row.less), 0);
  }
}

TEST(UnicodeStringIgnoreCaseTest, EmptyAndNullAreEqual) {
  EXPECT_EQ(Compare(nullptr, nullptr), 0);
  EXPECT_EQ(Compare(RX_TEXT(""), nullptr), 0);
  EXPECT_EQ(Compare(nullptr, RX_TEXT("")), 0);
}

TEST(UnicodeStringIgnoreCaseTest, PathsAreEqualInAnyCase) {
  EXPECT_EQ(Compare(RX_TEXT("C:\\Lib\\\u00c4.JAR"), RX_TEXT("c:\\lib\\\u00e4.jar")), 0);
  EXPECT_NE(Compare(RX_TEXT("C:\\Lib"), RX_TEXT("C:/Lib")), 0);
}

TEST(UnicodeStringIgnoreCaseTest, UnitsAfterAZeroAreCompared) {
  const CUnicodeString text(RX_TEXT("a\0b"), 3);
  EXPECT_EQ(text.CompareIgnoreCase(CUnicodeString(RX_TEXT("A\0B"), 3)), 0);
  EXPECT_LT(text.CompareIgnoreCase(CUnicodeString(RX_TEXT("A\0C"), 3)), 0);
}

}  // namespace
}  // namespace tests
