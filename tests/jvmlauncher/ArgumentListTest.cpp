// The arguments of a Java program.

#include <gmock/gmock.h>
#include <mirel/base/MemoryException.h>
#include <mirel/util/NoSuchElementException.h>

#include "fakes/Allocations.h"
#include "fakes/Failure.h"
#include "fakes/WideText.h"
#include "jvmlauncher/Access.h"

namespace tests {

using mirel::base::CMemoryException;
using mirel::util::CNoSuchElementException;
using testing::ElementsAre;
using torvan::jvmlauncher::CArgumentList;

namespace {

static_assert(sizeof(CArgumentList) == sizeof(mirel::util::CUnicodeStringVector), "a list is one vector");

CArgumentList ListOf(const std::vector<std::string>& texts) {
  CArgumentList list;
  for (const std::string& text : texts) list.Append(Widen(text).c_str());
  return list;
}

struct ListRow {
  const char* name;
  std::vector<std::string> arguments;
  const char* line;
};

class ArgumentListRenderingTest : public testing::TestWithParam<ListRow> {};

TEST_P(ArgumentListRenderingTest, QuotesWhatHoldsASpaceAndEndsEachArgumentWithASpace) {
  EXPECT_EQ(LineOf(ListOf(GetParam().arguments)), GetParam().line);
}

const ListRow ListRows[] = {
    {"NoArguments", {}, ""},
    {"OneArgument", {"x"}, "x "},
    {"OneEmptyArgument", {""}, " "},
    {"AnEmptyArgumentBetweenOthers", {"a", "", "b"}, "a  b "},
    {"ASpaceInside", {"a b", "c"}, "\"a b\" c "},
    {"ASpaceFirst", {" a"}, "\" a\" "},
    {"ASpaceLast", {"a "}, "\"a \" "},
    {"NothingButASpace", {" "}, "\" \" "},
    {"ATab", {"a\tb"}, "a\tb "},
    {"ALineEnd", {"a\nb"}, "a\nb "},
    {"ANoBreakSpace", {"a\u00a0b"}, "a\u00a0b "},
    {"AQuoteWithoutASpace", {"a\"b"}, "a\"b "},
    {"AQuoteAndASpace", {"say \"hi\""}, "\"say \"hi\"\" "},
    {"QuotedAlready", {"\"a b\""}, "\"\"a b\"\" "},
    {"ABackslashAtTheEnd", {"C:\\a\\"}, "C:\\a\\ "},
    {"ASpaceAndABackslashAtTheEnd", {"C:\\a b\\"}, "\"C:\\a b\\\" "},
    {"BeyondTheBasicPlane", {"\U0001F600 x"}, "\"\U0001F600 x\" "},
};

INSTANTIATE_TEST_SUITE_P(Arguments, ArgumentListRenderingTest, testing::ValuesIn(ListRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ArgumentListTest, TextsAreKeptInOrderAndUnchecked) {
  CArgumentList list = ListOf({"b", "", "a b", "b"});
  list.Append(nullptr);
  EXPECT_EQ(list.GetArgumentCount(), 5u);
  EXPECT_THAT(ArgumentsOf(list), ElementsAre("b", "", "a b", "b", "(null)"));
  EXPECT_EQ(LineOf(list), "b  \"a b\" b  ");
}

TEST(ArgumentListTest, AnArgumentIsACopy) {
  WideText text = Widen("before");
  CArgumentList list;
  list.Append(text.c_str());
  text[0] = RX_TEXT('X');
  EXPECT_THAT(ArgumentsOf(list), ElementsAre("before"));
}

TEST(ArgumentListTest, ALocationIsAppendedAsItsPath) {
  CArgumentList list;
  list.Append(Place::Location(RX_TEXT("C:\\My Files\\a.txt")));
  EXPECT_THAT(ArgumentsOf(list), ElementsAre("C:\\My Files\\a.txt"));
}

TEST(ArgumentListTest, ALocationThatNamesNothingIsAppendedAsAnEmptyArgument) {
  CArgumentList list;
  list.Append(Place::Location());
  EXPECT_EQ(list.GetArgumentCount(), 1u);
  EXPECT_EQ(list.GetArgumentAt(0).GetLength(), 0u);
  EXPECT_EQ(LineOf(list), " ");
}

TEST(ArgumentListTest, AListIsAppendedAfterWhatIsThere) {
  CArgumentList list = ListOf({"a"});
  list.Append(ListOf({"b", "c"}));
  list.Append(ListOf({}));
  EXPECT_THAT(ArgumentsOf(list), ElementsAre("a", "b", "c"));
}

TEST(ArgumentListTest, AListCanBeAppendedToItself) {
  CArgumentList list = ListOf({"1", "2", "3", "4", "5", "6"});
  list.Append(list);
  EXPECT_THAT(ArgumentsOf(list), ElementsAre("1", "2", "3", "4", "5", "6", "1", "2", "3", "4", "5", "6"));
}

TEST(ArgumentListTest, CopiesAreIndependent) {
  CArgumentList list = ListOf({"a"});
  CArgumentList copy(list);
  CArgumentList assigned = ListOf({"x", "y"});
  assigned = list;
  list.Append(RX_TEXT("b"));
  EXPECT_THAT(ArgumentsOf(copy), ElementsAre("a"));
  EXPECT_THAT(ArgumentsOf(assigned), ElementsAre("a"));
  EXPECT_THAT(ArgumentsOf(list), ElementsAre("a", "b"));
}

TEST(ArgumentListTest, AnIndexPastTheEndIsTheVectorsFailure) {
  const CArgumentList list = ListOf({"a"});
  EXPECT_EQ(FailureOf([&] { list.GetArgumentAt(1); }),
            Throws<CNoSuchElementException>("mirel/util/Vector", 175, nullptr));
}

TEST(ArgumentListTest, AnAppendThatRunsOutOfMemoryLeavesTheListAsItWas) {
  // The 11th argument makes the vector grow.
  const CArgumentList ten = ListOf({"1", "2", "3", "4", "5", "6", "7", "8", "9", "10"});
  int failedAppends = 0;
  FailEachAllocation(
      [&] {
        try {
          CArgumentList list(ten);
          try {
            list.Append(RX_TEXT("11"));
          } catch (const CMemoryException&) {
            ++failedAppends;
            EXPECT_EQ(list.GetArgumentCount(), 10u);
            throw;
          }
          EXPECT_THAT(ArgumentsOf(list), ElementsAre("1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11"));
        } catch (const CMemoryException&) {
        }
      },
      [&](int, const Allocations& allocations) { EXPECT_EQ(allocations.Live(), 0u); });
  EXPECT_GE(failedAppends, 2);  // the text and the array
}

}  // namespace
}  // namespace tests
