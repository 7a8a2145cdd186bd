#include "java/processes/Quoting.h"

#include <gtest/gtest.h>

#include <string>

namespace tests {
namespace {

TEST(QuotingTest, ACommandLineHasEachArgumentBetweenQuotes) {
  struct Row {
    const char* argument;
    const char* quoted;
  };
  const Row rows[] = {{"", R"("")"},           {"a b", R"("a b")"},        {R"(C:\x\)", R"("C:\x\\")"},
                      {R"(a"b)", R"("a\"b")"}, {R"(a\"b)", R"("a\\\"b")"}, {R"(\\s\t)", R"("\\s\t")"}};
  for (const Row& row : rows) {
    std::string line;
    torvan::java::detail::AppendQuoted(line, std::string(row.argument));
    EXPECT_EQ(line, row.quoted) << row.argument;
  }
  std::string two = "\"java\"";
  torvan::java::detail::AppendQuoted(two, std::string("x"));
  EXPECT_EQ(two, "\"java\" \"x\"");
}

}  // namespace
}  // namespace tests
