// The two forms of every option.

#include <gmock/gmock.h>

#include "fakes/TextRoom.h"
#include "jvmlauncher/Access.h"
#include "jvmlauncher/options/Options.h"

namespace tests {

using namespace torvan::jvmlauncher;
using namespace torvan::jvmlauncher::options;

namespace {

struct LineRow {
  const char* name;
  Option option;
  std::string line;
  std::vector<std::string> arguments;
};

class OptionRenderingLineTest : public testing::TestWithParam<LineRow> {};

TEST_P(OptionRenderingLineTest, IsExactOnTheCommandLine) { EXPECT_EQ(LineOf(*GetParam().option), GetParam().line); }

TEST_P(OptionRenderingLineTest, AppendsItsArgumentsUnquotedAndCountsThem) {
  CArgumentList list;
  list.Append(RX_TEXT("before"));
  EXPECT_EQ(AppendTo(list, *GetParam().option), GetParam().arguments.size());
  std::vector<std::string> expected = {"before"};
  expected.insert(expected.end(), GetParam().arguments.begin(), GetParam().arguments.end());
  EXPECT_EQ(ArgumentsOf(list), expected);
}

TEST_P(OptionRenderingLineTest, StartsWithRoomFor32Units) {
  EXPECT_EQ(FirstRoomOf([] { LineOf(*GetParam().option); }), RoomForUnits(32));
}

std::vector<LineRow> LineRows() {
  const auto Path = OnThisSystem;
  // clang-format off
  return {
      {"ClassPathWithoutEntries", ClassPath({}), "", {}},
      {"ClassPathOfOneEntry", ClassPath({"a"}), Path("-cp a;", "-cp a:"), {"-cp", Path("a;", "a:")}},
      {"ClassPathOfTwoEntries", ClassPath({"C:\\a", "C:\\b"}),
       Path("-cp C:\\a;C:\\b;", "-cp C:\\a:C:\\b:"), {"-cp", Path("C:\\a;C:\\b;", "C:\\a:C:\\b:")}},
      {"ClassPathWithASpaceInTheFirstEntry", ClassPath({"C:\\My Jars\\a.jar", "C:\\b"}),
       Path("-cp \"C:\\My Jars\\a.jar;C:\\b;\"", "-cp \"C:\\My Jars\\a.jar:C:\\b:\""),
       {"-cp", Path("C:\\My Jars\\a.jar;C:\\b;", "C:\\My Jars\\a.jar:C:\\b:")}},
      {"ClassPathWithASpaceInTheLastEntry", ClassPath({"a", "b c"}),
       Path("-cp \"a;b c;\"", "-cp \"a:b c:\""), {"-cp", Path("a;b c;", "a:b c:")}},
      {"ClassPathWithATab", ClassPath({"a\tb"}),
       Path("-cp a\tb;", "-cp a\tb:"), {"-cp", Path("a\tb;", "a\tb:")}},
      {"ClassPathOfAnEmptyEntry", ClassPath({""}), Path("-cp ;", "-cp :"), {"-cp", Path(";", ":")}},
      {"Jar", Jar("C:\\a.jar"), "-jar C:\\a.jar", {"-jar", "C:\\a.jar"}},
      {"JarWithASpace", Jar("C:\\My Jars\\a.jar"),
       "-jar \"C:\\My Jars\\a.jar\"", {"-jar", "C:\\My Jars\\a.jar"}},
      {"JarWithATab", Jar("a\tb.jar"), "-jar a\tb.jar", {"-jar", "a\tb.jar"}},
      {"JarWithQuotesAndASpace", Jar("\"a b\".jar"), "-jar \"\"a b\".jar\"", {"-jar", "\"a b\".jar"}},
      {"NonStandard", NonStandard("mx512m"), "-Xmx512m", {"-Xmx512m"}},
      {"NonStandardWithASpace", NonStandard("log:a b"), "-Xlog:a b", {"-Xlog:a b"}},
      {"Direct", Direct("-ea"), "-ea", {"-ea"}},
      {"DirectWithASpace", Direct("-ea -server"), "-ea -server", {"-ea -server"}},
      {"DirectWithQuotes", Direct("\"-Da=x y\""), "\"-Da=x y\"", {"\"-Da=x y\""}},
      {"Property", Property("a", "x"), "-Da=x", {"-Da=x"}},
      {"PropertyWithASpace", Property("a", "x y"), "-Da=\"x y\"", {"-Da=x y"}},
      {"PropertyWithQuotesAndASpace", Property("a", "x \"y\""), "-Da=\"x \"y\"\"", {"-Da=x \"y\""}},
      {"PropertyWithATab", Property("a", "x\ty"), "-Da=x\ty", {"-Da=x\ty"}},
      {"PropertyOfASpace", Property("a", " "), "-Da=\" \"", {"-Da= "}},
  };
  // clang-format on
}

INSTANTIATE_TEST_SUITE_P(Options, OptionRenderingLineTest, testing::ValuesIn(LineRows()),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(OptionRenderingTest, SetsAndListsStartWithRoomFor32Units) {
  const CJavaVmOptions options;
  const CArgumentList arguments;
  EXPECT_EQ(FirstRoomOf([&] { LineOf(options); }), RoomForUnits(32));
  EXPECT_EQ(FirstRoomOf([&] { LineOf(arguments); }), RoomForUnits(32));
}

TEST(OptionRenderingTest, ArgumentsThatAreComposedStartWithRoomFor32Units) {
  for (const Option& option : {ClassPath({"a"}), Property("a", "x")}) {
    CArgumentList list;
    EXPECT_EQ(FirstRoomOf([&] { AppendTo(list, *option); }), RoomForUnits(32)) << LineOf(*option);
  }
}

TEST(OptionRenderingTest, AnOptionWithoutTextRendersAsEmptyAndNotAsNull) {
  struct Unset : CDirectOption {
    Unset() = default;
  };
  EXPECT_EQ(LineOf(Unset()), "");
  struct UnsetNonStandard : CNonStandardOption {
    UnsetNonStandard() = default;
  };
  EXPECT_EQ(LineOf(UnsetNonStandard()), "-X");
}

}  // namespace
}  // namespace tests
