#include "platform/linux/CommandLine.h"

#include <gmock/gmock.h>
#include <mirel/base/MemoryException.h>

#include <string>
#include <vector>

#include "fakes/Allocations.h"

namespace tests {
namespace {

using torvan::platform::CommandLine;
using Arguments = std::vector<std::string>;

struct Row {
  const char* name;
  const char* line;
  Arguments arguments;
};

class CommandLineTest : public testing::TestWithParam<Row> {};

TEST_P(CommandLineTest, IsSplitByTheWindowsRules) {
  const CommandLine commandLine(GetParam().line);
  Arguments arguments;
  for (char* const* next = commandLine.GetArguments(); *next != nullptr; ++next) arguments.emplace_back(*next);
  EXPECT_EQ(GetParam().arguments, arguments);
}

const Row Rows[] = {
    {"ProgramAlone", R"(java)", {"java"}},
    {"EmptyLineIsAnEmptyProgram", R"()", {""}},
    {"BlankFirstIsAnEmptyProgram", R"( x)", {"", "x"}},
    {"BlanksAndTabsSeparate", "java \t -version\t-x", {"java", "-version", "-x"}},
    {"BlanksAtTheEndAddNothing", "java x  \t", {"java", "x"}},
    {"ProgramInQuotes", R"("C:\Program Files\java" x)", {R"(C:\Program Files\java)", "x"}},
    {"ProgramKeepsABackslashBeforeAQuote", R"("C:\dir\" x)", {R"(C:\dir\)", "x"}},
    {"ProgramWithQuotesInside", R"(pro"g r"am x)", {"prog ram", "x"}},
    {"ProgramIsNotEndedByADoubleQuotePair", R"("a""b" x)", {"ab", "x"}},
    {"TabInQuotes", "p \"a\tb\"", {"p", "a\tb"}},
    {"QuotesWithinAnArgument", R"(p a"b c"d)", {"p", "ab cd"}},
    {"EmptyArgument", R"(p "" x)", {"p", "", "x"}},
    {"EmptyArgumentLast", R"(p "")", {"p", ""}},
    {"EmptyQuotesWithinAnArgument", R"(p a""b)", {"p", "ab"}},
    {"PairWithinQuotesIsAQuote", R"(p "a""b")", {"p", R"(a"b)"}},
    {"PairWithinQuotesDoesNotEndThem", R"(p "a"" b")", {"p", R"(a" b)"}},
    {"FourQuotes", R"(p """")", {"p", R"(")"}},
    {"BackslashesAloneStay", R"(p a\\b \ c:\\)", {"p", R"(a\\b)", R"(\)", R"(c:\\)"}},
    {"OneBackslashMakesTheQuoteACharacter", R"(p a\"b c)", {"p", R"(a"b)", "c"}},
    {"TwoBackslashesAndAQuote", R"(p a\\"b c")", {"p", R"(a\b c)"}},
    {"ThreeBackslashesAndAQuote", R"(p a\\\"b c)", {"p", R"(a\"b)", "c"}},
    {"FourBackslashesAndAQuote", R"(p "a\\\\" b)", {"p", R"(a\\)", "b"}},
    {"EscapedQuoteWithinQuotes", R"(p "a\" b" c)", {"p", R"(a" b)", "c"}},
    {"EvenBackslashesBeforeAPair", R"(p "a\\"" b")", {"p", R"(a\" b)"}},
    {"QuotesLeftOpen", R"(p "a b )", {"p", "a b "}},
    {"BackslashInOpenQuotesAtTheEnd", R"(p "a\)", {"p", R"(a\)"}},
    {"SingleQuotesAreCharacters", R"(p 'a b')", {"p", "'a", "b'"}},
    {"OtherBytesStay", "p \xC3\xA4 *", {"p", "\xC3\xA4", "*"}},
    {"ManyShortArguments", "a b c d e f g h", {"a", "b", "c", "d", "e", "f", "g", "h"}},
};

INSTANTIATE_TEST_SUITE_P(Rules, CommandLineTest, testing::ValuesIn(Rows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(CommandLineMemoryTest, RunningOutOfMemoryIsAMemoryException) {
  Allocations allocations;
  allocations.Fail(1);
  EXPECT_THROW(CommandLine("java x"), mirel::base::CMemoryException);
  EXPECT_EQ(0u, allocations.Live());
}

TEST(CommandLineMemoryTest, TheArgumentsAreFreed) {
  Allocations allocations;
  { const CommandLine commandLine("java x"); }
  EXPECT_EQ(1, allocations.Made());
  EXPECT_EQ(0u, allocations.Live());
}

}  // namespace
}  // namespace tests
