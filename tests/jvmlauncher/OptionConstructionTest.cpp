// What the options accept, in which order they check it, and what they hold then.

#include <mirel/base/IllegalArgumentException.h>
#include <mirel/util/NoSuchElementException.h>
#include <torvan/jvmlauncher/options/ClassPathOption.h>
#include <torvan/jvmlauncher/options/DirectOption.h>
#include <torvan/jvmlauncher/options/JarOption.h>
#include <torvan/jvmlauncher/options/NonStandardOption.h>
#include <torvan/jvmlauncher/options/SystemPropertyOption.h>

#include <functional>

#include "fakes/Failure.h"
#include "fakes/Text.h"

using namespace torvan::jvmlauncher::options;
using fakes::Failure;
using fakes::FailureOf;
using fakes::Narrow;
using fakes::Throws;
using mirel::base::CIllegalArgumentException;
using Place::Location;

namespace {

constexpr const RX::UniChar* NullText = nullptr;

constexpr const char* JarFile = "jvmlauncher/options/JarOption";
constexpr const char* NonStandardFile = "jvmlauncher/options/NonStandardOption";
constexpr const char* DirectFile = "jvmlauncher/options/DirectOption";
constexpr const char* PropertyFile = "jvmlauncher/options/SystemPropertyOption";

struct Row {
  const char* name;
  std::function<void()> construct;
  const char* file;
  unsigned int line;
  const char* message;
};

class OptionRefusal : public testing::TestWithParam<Row> {};

TEST_P(OptionRefusal, NamesThePlaceAndTheArgument) {
  const Row& row = GetParam();
  EXPECT_EQ(FailureOf(row.construct), Throws<CIllegalArgumentException>(row.file, row.line, row.message));
}

const Location Nowhere;
const Location Somewhere(RX_TEXT("C:\\a b"));

// clang-format off
const Row Refusals[] = {
    {"JarNull",                  [] { CJarOption o(NullText); },                     JarFile, 47, "Invalid jar file path."},
    {"JarEmpty",                 [] { CJarOption o(RX_TEXT("")); },                  JarFile, 47, "Invalid jar file path."},
    // The status of the location is ignored: what is refused is its empty path.
    {"JarNowhere",               [] { CJarOption o(Nowhere); },                      JarFile, 67, "Invalid jar file path."},
    {"NonStandardNull",          [] { CNonStandardOption o(NullText); },             NonStandardFile, 42, "Invalid non-standard java vm option."},
    {"NonStandardEmpty",         [] { CNonStandardOption o(RX_TEXT("")); },          NonStandardFile, 42, "Invalid non-standard java vm option."},
    {"DirectNull",               [] { CDirectOption o(NullText); },                  DirectFile, 42, "Invalid direct java vm option."},
    {"DirectEmpty",              [] { CDirectOption o(RX_TEXT("")); },               DirectFile, 42, "Invalid direct java vm option."},

    {"PropertyNameNull",         [] { CSystemPropertyOption o(nullptr, RX_TEXT("v")); },                PropertyFile, 81, "Invalid system property name."},
    {"PropertyNameEmpty",        [] { CSystemPropertyOption o(RX_TEXT(""), RX_TEXT("v")); },            PropertyFile, 81, "Invalid system property name."},
    {"PropertyNameBeforeValue",  [] { CSystemPropertyOption o(nullptr, NullText); },                    PropertyFile, 81, "Invalid system property name."},
    {"PropertyValueNull",        [] { CSystemPropertyOption o(RX_TEXT("n"), NullText); },               PropertyFile, 83, "Invalid system property value."},
    {"PropertyValueEmpty",       [] { CSystemPropertyOption o(RX_TEXT("n"), RX_TEXT("")); },            PropertyFile, 83, "Invalid system property value."},
    {"PropertyValueBeforeSpace", [] { CSystemPropertyOption o(RX_TEXT("a b"), RX_TEXT("")); },          PropertyFile, 83, "Invalid system property value."},
    {"PropertyNameWithSpace",    [] { CSystemPropertyOption o(RX_TEXT("a b"), RX_TEXT("v")); },         PropertyFile, 89, "Invalid system property name."},
    {"PropertyNameSpaceFirst",   [] { CSystemPropertyOption o(RX_TEXT(" a"), RX_TEXT("v")); },          PropertyFile, 89, "Invalid system property name."},

    // The status of the location comes before everything else.
    {"LocationNowhere",          [] { CSystemPropertyOption o(RX_TEXT("n"), Nowhere); },                PropertyFile, 106, "Invalid system property value."},
    {"LocationBeforeNullName",   [] { CSystemPropertyOption o(nullptr, Nowhere); },                     PropertyFile, 106, "Invalid system property value."},
    {"LocationBeforeSpace",      [] { CSystemPropertyOption o(RX_TEXT("a b"), Nowhere); },              PropertyFile, 106, "Invalid system property value."},
    {"LocationNameNull",         [] { CSystemPropertyOption o(nullptr, Somewhere); },                   PropertyFile, 109, "Invalid system property name."},
    {"LocationNameEmpty",        [] { CSystemPropertyOption o(RX_TEXT(""), Somewhere); },               PropertyFile, 109, "Invalid system property name."},
    {"LocationNameWithSpace",    [] { CSystemPropertyOption o(RX_TEXT("a b"), Somewhere); },            PropertyFile, 117, "Invalid system property name."},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Options, OptionRefusal, testing::ValuesIn(Refusals),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(JarOptionTest, HoldsThePathAsGiven) {
  EXPECT_EQ(Narrow(CJarOption(RX_TEXT("C:\\My Jars\\a.jar")).GetJarFilePath()), "C:\\My Jars\\a.jar");
  EXPECT_EQ(Narrow(CJarOption(RX_TEXT(" ")).GetJarFilePath()), " ");
  EXPECT_EQ(Narrow(CJarOption(Somewhere).GetJarFilePath()), "C:\\a b");
}

TEST(NonStandardOptionTest, HoldsTheTextWithoutItsPrefix) {
  EXPECT_EQ(Narrow(CNonStandardOption(RX_TEXT("mx512m")).GetOption()), "mx512m");
}

TEST(DirectOptionTest, HoldsTheTextAsGiven) {
  EXPECT_EQ(Narrow(CDirectOption(RX_TEXT("-ea  -server ")).GetOption()), "-ea  -server ");
}

TEST(SystemPropertyOptionTest, HoldsNameAndValueAsGiven) {
  const CSystemPropertyOption option(RX_TEXT("a.b=c\t"), RX_TEXT(" x y "));
  EXPECT_EQ(Narrow(option.GetPropertyName()), "a.b=c\t");
  EXPECT_EQ(Narrow(option.GetPropertyValue()), " x y ");
}

TEST(SystemPropertyOptionTest, TakesThePathOfALocationForItsValue) {
  const CSystemPropertyOption option(RX_TEXT("java.io.tmpdir"), Somewhere);
  EXPECT_EQ(Narrow(option.GetPropertyName()), "java.io.tmpdir");
  EXPECT_EQ(Narrow(option.GetPropertyValue()), "C:\\a b");
}

TEST(ClassPathOptionTest, StartsWithoutEntries) { EXPECT_EQ(CClassPathOption().GetEntryCount(), 0u); }

TEST(ClassPathOptionTest, TakesAnyEntryInOrder) {
  CClassPathOption option;
  option.AddEntry(RX_TEXT("b.jar"));
  option.AddEntry(RX_TEXT(""));
  option.AddEntry(NullText);
  option.AddEntry(Somewhere);
  option.AddEntry(Nowhere);
  option.AddEntry(RX_TEXT("b.jar"));
  ASSERT_EQ(option.GetEntryCount(), 6u);
  EXPECT_EQ(Narrow(option.GetEntryAt(0)), "b.jar");
  EXPECT_EQ(option.GetEntryAt(1).GetLength(), 0u);
  EXPECT_EQ(option.GetEntryAt(2).GetLength(), 0u);
  EXPECT_EQ(Narrow(option.GetEntryAt(3)), "C:\\a b");
  EXPECT_EQ(option.GetEntryAt(4).GetLength(), 0u);
  EXPECT_EQ(Narrow(option.GetEntryAt(5)), "b.jar");
}

TEST(ClassPathOptionTest, AnIndexBehindTheEndIsTheVectorsFailure) {
  EXPECT_EQ(FailureOf([] { CClassPathOption().GetEntryAt(0); }),
            Throws<mirel::util::CNoSuchElementException>("mirel/util/Vector", 175, nullptr));
}

}  // namespace
