// What a launched program receives of its options and arguments.

#include <torvan/jvmlauncher/options/JarOption.h>

#include <memory>
#include <random>

#include "SafeArgument.h"
#include "jvmlauncher/LaunchSystemTest.h"
#include "jvmlauncher/options/Options.h"

namespace tests {

using namespace torvan::jvmlauncher;
using namespace torvan::jvmlauncher::options;
using testing::ElementsAreArray;

namespace {

using Texts = std::vector<std::string>;

struct LaunchRow {
  const char* name;
  std::vector<Option> options;
  const char* mainClass;  // null: none
  Texts arguments;
  Texts received;
};

class RenderingSystemTest : public LaunchSystemTest {};

class RenderingSystemArgumentsTest : public LaunchSystemTest, public testing::WithParamInterface<LaunchRow> {};

TEST_P(RenderingSystemArgumentsTest, AreWhatTheRenderingMeans) {
  CJavaVmOptions options;
  for (const Option& option : GetParam().options) options.AddOption(*option);
  const WideText mainClass = GetParam().mainClass != nullptr ? Widen(GetParam().mainClass) : WideText();
  const RX::UniChar* const main = GetParam().mainClass != nullptr ? mainClass.c_str() : nullptr;
  EXPECT_THAT(Received(options, main, ListOf(GetParam().arguments)), ElementsAreArray(GetParam().received));
}

// clang-format off
const LaunchRow LaunchRows[] = {
    // Arguments.
    {"NoArguments",              {}, "Main", {}, {"Main"}},
    {"OneArgument",              {}, "Main", {"x"}, {"Main", "x"}},
    {"ASpace",                   {}, "Main", {"a b", "c"}, {"Main", "a b", "c"}},
    {"NothingButSpaces",         {}, "Main", {"  "}, {"Main", "  "}},
    {"SpacesAround",             {}, "Main", {" a "}, {"Main", " a "}},
    {"AnEmptyArgument",          {}, "Main", {"a", "", "b"}, {"Main", "a", "b"}},
    {"ATab",                     {}, "Main", {"a\tb"}, {"Main", "a", "b"}},
    {"ATabAndASpace",            {}, "Main", {"a\tb c"}, {"Main", "a\tb c"}},
    {"AQuote",                   {}, "Main", {"a\"b", "c"}, {"Main", "ab c "}},
    {"AnEscapedQuote",           {}, "Main", {"a\\\"b"}, {"Main", "a\"b"}},
    {"QuotesAndASpace",          {}, "Main", {"say \"hi\"", "x"}, {"Main", "say hi", "x"}},
    {"QuotesAroundASpace",       {}, "Main", {"\"a b\""}, {"Main", "a", "b"}},
    {"QuotesAroundNothing",      {}, "Main", {"\"\"", "x"}, {"Main", "", "x"}},
    {"EscapedQuotesAndASpace",   {}, "Main", {"say \\\"hi\\\""}, {"Main", "say \"hi\""}},
    {"ABackslash",               {}, "Main", {"C:\\a"}, {"Main", "C:\\a"}},
    {"ABackslashLast",           {}, "Main", {"C:\\a\\", "b"}, {"Main", "C:\\a\\", "b"}},
    {"ASpaceAndABackslashLast",  {}, "Main", {"C:\\a b\\", "c", "d"}, {"Main", "C:\\a b\" c d "}},
    {"ASpaceAndTwoBackslashes",  {}, "Main", {"C:\\a b\\\\", "c"}, {"Main", "C:\\a b\\", "c"}},
    {"BackslashesInside",        {}, "Main", {"\\\\server\\my share"}, {"Main", "\\\\server\\my share"}},
    {"AnArgumentThatAddsOthers",        {}, "Main", {"x\" -y \"z"}, {"Main", "x", "-y", "z"}},
    {"ShellCharacters",          {}, "Main", {"$HOME", "`x`", "a;b", "a|b", "'a'", "%PATH%", "a&b", "a>b", "^"},
                                 {"Main", "$HOME", "`x`", "a;b", "a|b", "'a'", "%PATH%", "a&b", "a>b", "^"}},
    {"LettersBeyondAscii",       {}, "Main", {"\u00e4\u4e2d", "\u00fc \u20ac"}, {"Main", "\u00e4\u4e2d", "\u00fc \u20ac"}},
    {"BeyondTheBasicPlane",      {}, "Main", {"\U0001F600 x"}, {"Main", "\U0001F600 x"}},
    {"ALineEnd",                 {}, "Main", {"a\nb"}, {"Main", "a\nb"}},
    {"ANoBreakSpace",            {}, "Main", {"a\u00a0b"}, {"Main", "a\u00a0b"}},
    {"ALongArgument",            {}, "Main", {std::string(8000, 'x')}, {"Main", std::string(8000, 'x')}},

    // The main class.
    {"APackage",                 {}, "com.acme.Main", {}, {"com.acme.Main"}},
    {"AMainClassWithASpace",     {}, "-ea Main", {}, {"-ea", "Main"}},

    // The class path.
    {"ClassPath",                {ClassPath({"a", "b"})}, "Main", {}, {"-cp", OnThisSystem("a;b;", "a:b:"), "Main"}},
    {"ClassPathWithASpace",      {ClassPath({"a b", "c"})}, "Main", {},
                                 {"-cp", OnThisSystem("a b;c;", "a b:c:"), "Main"}},
    {"ClassPathOfAFolder",       {ClassPath({"C:\\a b\\"})}, "Main", {},
                                 {"-cp", OnThisSystem("C:\\a b\\;", "C:\\a b\\:"), "Main"}},
    {"ClassPathWithoutEntries",  {ClassPath({})}, "Main", {"x"}, {"Main", "x"}},
    {"ClassPathWithATab",        {ClassPath({"a\tb"})}, "Main", {}, {"-cp", "a", OnThisSystem("b;", "b:"), "Main"}},

    // Jars.
    {"Jar",                      {Jar("a.jar")}, nullptr, {"x"}, {"-jar", "a.jar", "x"}},
    {"JarWithASpace",            {Jar("My Jars/a.jar")}, nullptr, {"x"}, {"-jar", "My Jars/a.jar", "x"}},
    {"JarAndMainClass",          {Jar("a.jar")}, "Main", {}, {"-jar", "a.jar", "Main"}},

    // Properties.
    {"Property",                 {Property("a", "x")}, "Main", {}, {"-Da=x", "Main"}},
    {"PropertyWithASpace",       {Property("a.b", "x y")}, "Main", {}, {"-Da.b=x y", "Main"}},
    {"PropertyWithAnEqualsSign", {Property("a", "b=c d=e")}, "Main", {}, {"-Da=b=c d=e", "Main"}},
    {"PropertyOfAFolder",        {Property("a", "C:\\x\\")}, "Main", {}, {"-Da=C:\\x\\", "Main"}},
    {"PropertySpaceAndBackslash",{Property("a", "C:\\x y\\")}, "Main", {"z"}, {"-Da=C:\\x y\" Main z "}},
    {"PropertyWithOptions",      {Property("a", "x\" -Xy \"z")}, "Main", {}, {"-Da=x", "-Xy", "z", "Main"}},

    // Other options.
    {"NonStandard",              {NonStandard("mx512m")}, "Main", {}, {"-Xmx512m", "Main"}},
    {"NonStandardWithASpace",    {NonStandard("a b")}, "Main", {}, {"-Xa", "b", "Main"}},
    {"Direct",                   {Direct("-ea")}, "Main", {}, {"-ea", "Main"}},
    {"DirectWithASpace",         {Direct("-ea -server")}, "Main", {}, {"-ea", "-server", "Main"}},
    {"DirectInItsOwnQuotes",     {Direct("\"-Da=x y\"")}, "Main", {}, {"-Da=x y", "Main"}},
    {"AllTogether",              {NonStandard("mx1g"), ClassPath({"a b"}), Property("n", "v w"), Jar("x y.jar")},
                                 nullptr, {"1 2", "3"},
                                 {"-Xmx1g", "-cp", OnThisSystem("a b;", "a b:"), "-Dn=v w", "-jar", "x y.jar", "1 2", "3"}},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Launches, RenderingSystemArgumentsTest, testing::ValuesIn(LaunchRows),
                         [](const auto& row) { return std::string(row.param.name); });

// --- Text from elsewhere ---

TEST_F(RenderingSystemTest, ASafeArgumentArrivesAsItIsWhateverItHolds) {
  std::mt19937 random(42);
  const WideText units = RX_TEXT("ab  \"\"\\\\\t\n*?'=\u00e4\u4e2d");
  for (int launch = 0; launch < 10; ++launch) {
    Texts texts;
    CArgumentList list;
    CJavaVmOptions options;
    for (int i = 0; i < 30; ++i) {
      WideText text(random() % 7, RX_TEXT('x'));
      for (RX::UniChar& unit : text) unit = units[random() % units.size()];
      texts.push_back(Narrow(text.c_str()));
      list.Append(SafeArgument(text).c_str());
    }
    const WideText value = Widen(texts[0] + "x");
    options.AddOption(CSystemPropertyOption(RX_TEXT("n"), SafeArgument(value).c_str()));
    texts.insert(texts.begin(), {"-Dn=" + Narrow(value.c_str()), "Main"});
    EXPECT_THAT(Received(options, RX_TEXT("Main"), list), ElementsAreArray(texts));
  }
}

TEST_F(RenderingSystemTest, ASafePathIsTheFileWhateverItsNameBeginsWith) {
  struct PathRow {
    const char* path;
    const char* received;
  };
  const PathRow rows[] = {
      {"a.jar", "a.jar"},     {"/a/-b.jar", "/a/-b.jar"}, {"a@b-c.jar", "a@b-c.jar"},   {"-a.jar", "./-a.jar"},
      {"@a.jar", "./@a.jar"}, {"-a b.jar", "./-a b.jar"}, {"@a\"b.jar", "./@a\"b.jar"}, {"@", "./@"},
      {"- x\\", "./- x\\"},
  };
  for (const PathRow& row : rows) {
    const WideText path = Widen(row.path);
    CJavaVmOptions options;
    options.AddOption(CJarOption(SafeJarPath(path).c_str()));
    EXPECT_THAT(Received(options, nullptr, {}), ElementsAreArray({"-jar", row.received}));
    EXPECT_EQ(Narrow(SafePath(path).c_str()), row.received);
  }
  EXPECT_EQ(Narrow(SafePath({}).c_str()), "");
}

}  // namespace
}  // namespace tests
