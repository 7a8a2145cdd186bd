// The programs of the pages on runtimes and processes, run with jars of the same names that write what has come.
#include <gtest/gtest.h>
#include <torvan/Java.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

// Of the pages.
void ChooseRuntimes(const std::filesystem::path& programFolder, const std::filesystem::path& folderFromSettings);
void RunAProgram();
void TalkToAProgram();

namespace {

std::string g_shown;
std::vector<std::string> g_lines;

}  // namespace

// What the pages leave to their reader.
void Show(const std::string& text) { g_shown = text; }
void Log(std::string_view line) { g_lines.emplace_back(line); }

namespace tests {
namespace {

TEST(JavaExamplesTest, RuntimesAreChosen) {
  const auto fits = [](const torvan::java::Runtime& runtime) {
    return runtime.Version().Feature() >= 11 && runtime.Version().Feature() <= 21;
  };
  const std::vector<torvan::java::Runtime> found = torvan::java::FindRuntimes().found;
  if (std::none_of(found.begin(), found.end(), fits)) GTEST_SKIP() << "no Java of this machine is one of 11 to 21";
  EXPECT_NO_THROW(ChooseRuntimes(".", JAVA_OF_TESTS));
  EXPECT_THROW(ChooseRuntimes(".", "nowhere"), torvan::java::StartFailure);
}

TEST(JavaExamplesTest, AProgramIsRun) {
  RunAProgram();
  EXPECT_EQ(g_shown,
            "-tsvg -pipe true: Alice -> Bob : Gr\xC3\xBC"
            "ezi");
}

TEST(JavaExamplesTest, AProgramIsTalkedTo) {
  // The page stops a program that has not answered after some seconds: on a busy machine it may not have begun.
  for (int tries = 0; g_lines.empty() && tries < 10; ++tries) TalkToAProgram();
  EXPECT_EQ(g_lines, std::vector<std::string>{"reload"});
}

}  // namespace
}  // namespace tests
