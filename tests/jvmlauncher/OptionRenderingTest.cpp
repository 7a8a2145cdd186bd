// The two forms of every option.

#include <gmock/gmock.h>
#include <torvan/jvmlauncher/options/ClassPathOption.h>
#include <torvan/jvmlauncher/options/DirectOption.h>
#include <torvan/jvmlauncher/options/JarOption.h>
#include <torvan/jvmlauncher/options/NonStandardOption.h>
#include <torvan/jvmlauncher/options/SystemPropertyOption.h>

#include <functional>

#include "fakes/Allocations.h"
#include "fakes/Text.h"
#include "jvmlauncher/Access.h"

using namespace torvan::jvmlauncher;
using namespace torvan::jvmlauncher::options;
using fakes::Widen;
using tests::AppendTo;
using tests::ArgumentsOf;
using tests::LineOf;
using tests::OnThisSystem;

namespace {

CClassPathOption ClassPath(const std::vector<std::string>& entries) {
  CClassPathOption option;
  for (const std::string& entry : entries) option.AddEntry(Widen(entry).c_str());
  return option;
}
CJarOption Jar(const char* path) { return CJarOption(Widen(path).c_str()); }
CNonStandardOption NonStandard(const char* text) { return CNonStandardOption(Widen(text).c_str()); }
CDirectOption Direct(const char* text) { return CDirectOption(Widen(text).c_str()); }
CSystemPropertyOption Property(const char* name, const char* value) {
  return CSystemPropertyOption(Widen(name).c_str(), Widen(value).c_str());
}

struct Row {
  const char* name;
  std::shared_ptr<CJavaVmOption> option;
  std::string line;
  std::vector<std::string> arguments;
};

template <typename Option>
Row MakeRow(const char* name, const Option& option, const std::string& line,
            const std::vector<std::string>& arguments) {
  return {name, std::shared_ptr<CJavaVmOption>(new Option(option)), line, arguments};
}

class OptionRendering : public testing::TestWithParam<Row> {};

TEST_P(OptionRendering, IsExactOnTheCommandLine) { EXPECT_EQ(LineOf(*GetParam().option), GetParam().line); }

TEST_P(OptionRendering, AppendsItsArgumentsUnquotedAndCountsThem) {
  CArgumentList list;
  list.Append(RX_TEXT("before"));
  EXPECT_EQ(AppendTo(list, *GetParam().option), GetParam().arguments.size());
  std::vector<std::string> expected = {"before"};
  expected.insert(expected.end(), GetParam().arguments.begin(), GetParam().arguments.end());
  EXPECT_EQ(ArgumentsOf(list), expected);
}

// The bytes that a rendering asks for first: room for 32 units, and perhaps for a final zero.
const auto RoomFor32Units = testing::AllOf(testing::Ge(2 * 32u), testing::Le(2 * (32u + 1)));

template <typename Object>
std::size_t FirstRoomOf(const Object& object) {
  const fakes::Allocations allocations;
  LineOf(object);
  return allocations.Taken().at(0).size;
}

TEST_P(OptionRendering, StartsWithRoomFor32Units) { EXPECT_THAT(FirstRoomOf(*GetParam().option), RoomFor32Units); }

std::vector<Row> Rows() {
  const auto Path = OnThisSystem;
  // clang-format off
  return {
      MakeRow("ClassPathWithoutEntries", ClassPath({}), "", {}),
      MakeRow("ClassPathOfOneEntry", ClassPath({"a"}), Path("-cp a;", "-cp a:"), {"-cp", Path("a;", "a:")}),
      MakeRow("ClassPathOfTwoEntries", ClassPath({"C:\\a", "C:\\b"}),
              Path("-cp C:\\a;C:\\b;", "-cp C:\\a:C:\\b:"), {"-cp", Path("C:\\a;C:\\b;", "C:\\a:C:\\b:")}),
      MakeRow("ClassPathWithASpaceInTheFirstEntry", ClassPath({"C:\\My Jars\\a.jar", "C:\\b"}),
              Path("-cp \"C:\\My Jars\\a.jar;C:\\b;\"", "-cp \"C:\\My Jars\\a.jar:C:\\b:\""),
              {"-cp", Path("C:\\My Jars\\a.jar;C:\\b;", "C:\\My Jars\\a.jar:C:\\b:")}),
      MakeRow("ClassPathWithASpaceInTheLastEntry", ClassPath({"a", "b c"}),
              Path("-cp \"a;b c;\"", "-cp \"a:b c:\""), {"-cp", Path("a;b c;", "a:b c:")}),
      MakeRow("ClassPathWithATab", ClassPath({"a\tb"}),
              Path("-cp a\tb;", "-cp a\tb:"), {"-cp", Path("a\tb;", "a\tb:")}),
      MakeRow("ClassPathOfAnEmptyEntry", ClassPath({""}), Path("-cp ;", "-cp :"), {"-cp", Path(";", ":")}),
      MakeRow("Jar", Jar("C:\\a.jar"), "-jar C:\\a.jar", {"-jar", "C:\\a.jar"}),
      MakeRow("JarWithASpace", Jar("C:\\My Jars\\a.jar"),
              "-jar \"C:\\My Jars\\a.jar\"", {"-jar", "C:\\My Jars\\a.jar"}),
      MakeRow("JarWithATab", Jar("a\tb.jar"), "-jar a\tb.jar", {"-jar", "a\tb.jar"}),
      MakeRow("JarWithQuotesAndASpace", Jar("\"a b\".jar"), "-jar \"\"a b\".jar\"", {"-jar", "\"a b\".jar"}),
      MakeRow("NonStandard", NonStandard("mx512m"), "-Xmx512m", {"-Xmx512m"}),
      MakeRow("NonStandardWithASpace", NonStandard("log:a b"), "-Xlog:a b", {"-Xlog:a b"}),
      MakeRow("Direct", Direct("-ea"), "-ea", {"-ea"}),
      MakeRow("DirectWithASpace", Direct("-ea -server"), "-ea -server", {"-ea -server"}),
      MakeRow("DirectWithQuotes", Direct("\"-Da=x y\""), "\"-Da=x y\"", {"\"-Da=x y\""}),
      MakeRow("Property", Property("a", "x"), "-Da=x", {"-Da=x"}),
      MakeRow("PropertyWithASpace", Property("a", "x y"), "-Da=\"x y\"", {"-Da=x y"}),
      MakeRow("PropertyWithQuotesAndASpace", Property("a", "x \"y\""), "-Da=\"x \"y\"\"", {"-Da=x \"y\""}),
      MakeRow("PropertyWithATab", Property("a", "x\ty"), "-Da=x\ty", {"-Da=x\ty"}),
      MakeRow("PropertyOfASpace", Property("a", " "), "-Da=\" \"", {"-Da= "}),
  };
  // clang-format on
}

INSTANTIATE_TEST_SUITE_P(Options, OptionRendering, testing::ValuesIn(Rows()),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(OptionRenderingTest, SetsAndListsStartWithRoomFor32Units) {
  EXPECT_THAT(FirstRoomOf(CJavaVmOptions()), RoomFor32Units);
  EXPECT_THAT(FirstRoomOf(CArgumentList()), RoomFor32Units);
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
