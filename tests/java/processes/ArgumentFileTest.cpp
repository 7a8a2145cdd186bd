// The text of an argument file, read back as java reads it.
#include "java/processes/ArgumentFile.h"

#include <gtest/gtest.h>

#include "java/processes/ArgumentFileReader.h"
#include "java/processes/Quoting.h"
#include "java/processes/RandomArguments.h"

namespace tests {
namespace {

std::string Written(const std::vector<std::string>& arguments) {
  std::string file;
  for (const std::string& argument : arguments) torvan::java::detail::AppendToArgumentFile(file, argument);
  return file;
}

TEST(ArgumentFileTest, EachArgumentIsALineBetweenQuotes) {
  EXPECT_EQ(Written({"a", "", "two words"}), "\"a\"\n\"\"\n\"two words\"\n");
  EXPECT_EQ(Written({"\"\\"}), "\"\\\"\\\\\"\n");
  EXPECT_EQ(Written({"a\nb\rc"}), "\"a\\nb\\rc\"\n");
  EXPECT_EQ(Written({"#'\t\f"}), "\"#'\t\f\"\n");
}

TEST(ArgumentFileTest, WhatIsWrittenIsReadAgain) {
  EXPECT_EQ(ReadArgumentFile(Written(KnownArguments())), KnownArguments());
  RandomArguments random(AllPieces());
  for (int i = 0; i < 100; ++i) {
    const auto arguments = random.Next(500);
    ASSERT_EQ(ReadArgumentFile(Written(arguments)), arguments);
  }
}

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
