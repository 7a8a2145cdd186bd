// What the options accept, in which order they check it, and what they contain then.

#include <mirel/base/IllegalArgumentException.h>
#include <mirel/util/NoSuchElementException.h>
#include <torvan/jvmlauncher/options/ClassPathOption.h>
#include <torvan/jvmlauncher/options/DirectOption.h>
#include <torvan/jvmlauncher/options/JarOption.h>
#include <torvan/jvmlauncher/options/NonStandardOption.h>
#include <torvan/jvmlauncher/options/SystemPropertyOption.h>

#include <functional>
#include <type_traits>

#include "fakes/Failure.h"
#include "fakes/WideText.h"

namespace tests {

using namespace torvan::jvmlauncher::options;
using mirel::base::CIllegalArgumentException;
using Place::Location;

namespace {

constexpr const RX::UniChar* NullText = nullptr;

constexpr const char* JarFile = "jvmlauncher/options/JarOption";
constexpr const char* NonStandardFile = "jvmlauncher/options/NonStandardOption";
constexpr const char* DirectFile = "jvmlauncher/options/DirectOption";
constexpr const char* PropertyFile = "jvmlauncher/options/SystemPropertyOption";

constexpr const char* BadJar = "Invalid jar file path.";
constexpr const char* BadNonStandard = "Invalid non-standard java vm option.";
constexpr const char* BadDirect = "Invalid direct java vm option.";
constexpr const char* BadName = "Invalid system property name.";
constexpr const char* BadValue = "Invalid system property value.";

using Construction = std::function<void()>;

template <typename Option, typename... Arguments>
Construction Make(Arguments... arguments) {
  return [=] { Option option(arguments...); };
}

struct TextRow {
  const char* name;
  Construction construct;
  const char* file;
  unsigned int line;
  const char* message;
};

class OptionConstructionRefusalTest : public testing::TestWithParam<TextRow> {};

TEST_P(OptionConstructionRefusalTest, NamesThePlaceAndTheArgument) {
  const TextRow& row = GetParam();
  EXPECT_EQ(FailureOf(row.construct), Throws<CIllegalArgumentException>(row.file, row.line, row.message));
}

using Property = CSystemPropertyOption;

const Location Nowhere;
const Location Somewhere(RX_TEXT("C:\\a b"));
constexpr const RX::UniChar* Empty = RX_TEXT("");
constexpr const RX::UniChar* Plain = RX_TEXT("n");
constexpr const RX::UniChar* Spaced = RX_TEXT("a b");
constexpr const RX::UniChar* SpaceFirst = RX_TEXT(" a");

// clang-format off
const TextRow Refusals[] = {
    {"JarNull",                  Make<CJarOption>(NullText),           JarFile, 47, BadJar},
    {"JarEmpty",                 Make<CJarOption>(Empty),              JarFile, 47, BadJar},
    // The status of the location is ignored: what is refused is its empty path.
    {"JarNowhere",               Make<CJarOption>(Nowhere),            JarFile, 67, BadJar},
    {"NonStandardNull",          Make<CNonStandardOption>(NullText),   NonStandardFile, 42, BadNonStandard},
    {"NonStandardEmpty",         Make<CNonStandardOption>(Empty),      NonStandardFile, 42, BadNonStandard},
    {"DirectNull",               Make<CDirectOption>(NullText),        DirectFile, 42, BadDirect},
    {"DirectEmpty",              Make<CDirectOption>(Empty),           DirectFile, 42, BadDirect},

    {"PropertyNameNull",         Make<Property>(NullText, Plain),      PropertyFile, 81, BadName},
    {"PropertyNameEmpty",        Make<Property>(Empty, Plain),         PropertyFile, 81, BadName},
    {"PropertyNameBeforeValue",  Make<Property>(NullText, NullText),   PropertyFile, 81, BadName},
    {"PropertyValueNull",        Make<Property>(Plain, NullText),      PropertyFile, 83, BadValue},
    {"PropertyValueEmpty",       Make<Property>(Plain, Empty),         PropertyFile, 83, BadValue},
    {"PropertyValueBeforeSpace", Make<Property>(Spaced, Empty),        PropertyFile, 83, BadValue},
    {"PropertyNameWithSpace",    Make<Property>(Spaced, Plain),        PropertyFile, 89, BadName},
    {"PropertyNameSpaceFirst",   Make<Property>(SpaceFirst, Plain),    PropertyFile, 89, BadName},

    // The status of the location comes before everything else.
    {"LocationNowhere",          Make<Property>(Plain, Nowhere),       PropertyFile, 106, BadValue},
    {"LocationBeforeNullName",   Make<Property>(NullText, Nowhere),    PropertyFile, 106, BadValue},
    {"LocationBeforeSpace",      Make<Property>(Spaced, Nowhere),      PropertyFile, 106, BadValue},
    {"LocationNameNull",         Make<Property>(NullText, Somewhere),  PropertyFile, 109, BadName},
    {"LocationNameEmpty",        Make<Property>(Empty, Somewhere),     PropertyFile, 109, BadName},
    {"LocationNameWithSpace",    Make<Property>(Spaced, Somewhere),    PropertyFile, 117, BadName},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Options, OptionConstructionRefusalTest, testing::ValuesIn(Refusals),
                         [](const auto& row) { return std::string(row.param.name); });

static_assert(std::is_convertible_v<const RX::UniChar*, CJarOption> && std::is_convertible_v<Location, CJarOption> &&
                  std::is_convertible_v<const RX::UniChar*, CNonStandardOption> &&
                  std::is_convertible_v<const RX::UniChar*, CDirectOption>,
              "hosts may write a text where an option is asked for");

TEST(OptionConstructionJarTest, HoldsThePathAsGiven) {
  EXPECT_EQ(Narrow(CJarOption(RX_TEXT("C:\\My Jars\\a.jar")).GetJarFilePath()), "C:\\My Jars\\a.jar");
  EXPECT_EQ(Narrow(CJarOption(RX_TEXT(" ")).GetJarFilePath()), " ");
  EXPECT_EQ(Narrow(CJarOption(Somewhere).GetJarFilePath()), "C:\\a b");
}

TEST(OptionConstructionNonStandardTest, HoldsTheTextWithoutItsPrefix) {
  EXPECT_EQ(Narrow(CNonStandardOption(RX_TEXT("mx512m")).GetOption()), "mx512m");
}

TEST(OptionConstructionDirectTest, HoldsTheTextAsGiven) {
  EXPECT_EQ(Narrow(CDirectOption(RX_TEXT("-ea  -server ")).GetOption()), "-ea  -server ");
}

TEST(OptionConstructionSystemPropertyTest, HoldsNameAndValueAsGiven) {
  const CSystemPropertyOption option(RX_TEXT("a.b=c\t"), RX_TEXT(" x y "));
  EXPECT_EQ(Narrow(option.GetPropertyName()), "a.b=c\t");
  EXPECT_EQ(Narrow(option.GetPropertyValue()), " x y ");
}

TEST(OptionConstructionSystemPropertyTest, TakesThePathOfALocationForItsValue) {
  const CSystemPropertyOption option(RX_TEXT("java.io.tmpdir"), Somewhere);
  EXPECT_EQ(Narrow(option.GetPropertyName()), "java.io.tmpdir");
  EXPECT_EQ(Narrow(option.GetPropertyValue()), "C:\\a b");
}

TEST(OptionConstructionClassPathTest, StartsWithoutEntries) { EXPECT_EQ(CClassPathOption().GetEntryCount(), 0u); }

TEST(OptionConstructionClassPathTest, TakesAnyEntryInOrder) {
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

TEST(OptionConstructionClassPathTest, AnIndexPastTheEndIsTheVectorsFailure) {
  EXPECT_EQ(FailureOf([] { CClassPathOption().GetEntryAt(0); }),
            Throws<mirel::util::CNoSuchElementException>("mirel/util/Vector", 175, nullptr));
}

}  // namespace
}  // namespace tests
