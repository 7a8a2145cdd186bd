#include "java/runtimes/Pattern.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

namespace tests {
namespace {

using namespace torvan::java;
using namespace torvan::java::detail;

using testing::ElementsAre;
using testing::IsEmpty;

using Names = std::vector<std::string>;

// "place foundIn" of each match.
Names Matches(const std::string& pattern, const std::map<std::string, Names>& tree) {
  Names matches;
  const auto namesIn = [&tree](const std::string& place) {
    const auto found = tree.find(place);
    return found == tree.end() ? Names() : found->second;
  };
  for (const Expansion& match : Expand("base", pattern, '/', namesIn)) {
    matches.push_back(match.place + " " + match.foundIn);
  }
  return matches;
}

TEST(PatternTest, APartWithoutAStarIsTakenAsItIs) {
  EXPECT_THAT(Matches("a", {}), ElementsAre("base/a base"));
  EXPECT_THAT(Matches("a/b", {}), ElementsAre("base/a/b base/a"));
}

TEST(PatternTest, AStarFitsEveryName) {
  EXPECT_THAT(Matches("*", {{"base", {"x", "y"}}}), ElementsAre("base/x base", "base/y base"));
  EXPECT_THAT(Matches("a/*/b", {{"base/a", {"x", "y"}}}), ElementsAre("base/a/x/b base/a", "base/a/y/b base/a"));
  EXPECT_THAT(Matches("*/*", {{"base", {"x", "y"}}, {"base/y", {"z"}}}), ElementsAre("base/y/z base"));
  EXPECT_THAT(Matches("a/*", {{"base", {"x"}}}), IsEmpty());
}

TEST(PatternTest, WhatIsAroundAStarMustFit) {
  const std::map<std::string, Names> tree = {{"base", {"jdk", "jdk-17", "openjdk", "jd", "a-jdk-b"}}};
  EXPECT_THAT(Matches("jdk*", tree), ElementsAre("base/jdk base", "base/jdk-17 base"));
  EXPECT_THAT(Matches("*jdk", tree), ElementsAre("base/jdk base", "base/openjdk base"));
  EXPECT_THAT(Matches("jd*k", {{"base", {"jdk", "jdxk", "jk"}}}), ElementsAre("base/jdk base", "base/jdxk base"));
  EXPECT_THAT(Matches("aa*aa", {{"base", {"aaa", "aaaa"}}}), ElementsAre("base/aaaa base"));
}

}  // namespace
}  // namespace tests
