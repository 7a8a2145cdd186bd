// The text of an argument file, read back as java reads it.
#include "java/processes/ArgumentFile.h"

#include <gtest/gtest.h>

#include "java/processes/ArgumentFileReader.h"
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

}  // namespace
}  // namespace tests
