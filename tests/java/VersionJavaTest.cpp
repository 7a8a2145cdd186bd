// Versions as the Java of JAVA_HOME reads and orders them.
#include <gtest/gtest.h>
#include <torvan/java/Process.h>
#include <torvan/java/Runtimes.h>

#include <cstdlib>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace tests {
namespace {

using namespace torvan::java;

// What Java prints of the texts, a line for its own version and one for each.
std::vector<std::string> AskJava(const std::vector<std::string>& texts) {
  const Outcome outcome = Run(Program::MainClass("VersionProbe")
                                  .Runtime(std::getenv("JAVA_HOME"))
                                  .ClassPath({VERSION_PROBE_CLASSES})
                                  .Arguments(texts));
  EXPECT_EQ(outcome.error, "");
  EXPECT_EQ(outcome.exitCode, 0);
  std::istringstream printed(outcome.output);
  std::vector<std::string> lines;
  for (std::string line; std::getline(printed, line);) lines.push_back(line);
  return lines;
}

// The same of Version; a text that Java does not take is what Java says of it.
std::string LineOf(const std::string& text, const std::vector<std::string>& texts, const std::string& ofJava) {
  if (ofJava == "x") return "x";
  const std::optional<Version> version = Version::TryParse(text);
  if (!version) return "is no version here";
  std::string line;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const std::optional<Version> other = Version::TryParse(texts[i]);
    line += i < ofJava.size() && ofJava[i] == 'x' ? 'x' : !other ? '?' : "<=>"[version->Compare(*other) + 1];
  }
  return line;
}

// How many of the texts Java takes; each of them must be one here, in the same order.
int ExpectSameOrder(const std::vector<std::string>& texts) {
  const std::vector<std::string> lines = AskJava(texts);
  EXPECT_EQ(lines.size(), texts.size() + 1);
  int taken = 0;
  for (std::size_t i = 0; i < texts.size() && i + 1 < lines.size(); ++i) {
    EXPECT_EQ(LineOf(texts[i], texts, lines[i + 1]), lines[i + 1]) << texts[i];
    taken += lines[i + 1] == "x" ? 0 : 1;
  }
  return taken;
}

TEST(VersionJavaTest, TheReleaseFileTellsWhatJavaSaysOfItself) {
  const std::vector<std::string> lines = AskJava({});
  ASSERT_EQ(lines.size(), 1u);
  const Version version = RuntimeIn(std::getenv("JAVA_HOME")).Version();
  if (version.Feature() < 16) GTEST_SKIP() << "older release files lack the build";
  EXPECT_EQ(version.ToString(), lines[0]);
  EXPECT_EQ(version, Version::Parse(lines[0]));
}

TEST(VersionJavaTest, KnownVersionsAreOrderedAsJavaDoes) {
  const std::vector<std::string> texts = {"9-2",
                                          "9-10",
                                          "9-010",
                                          "9-10a",
                                          "9-Debian",
                                          "9-ea",
                                          "9-EA",
                                          "9-ea+1",
                                          "9-ea+10",
                                          "9-ea+10-x",
                                          "9-internal",
                                          "9",
                                          "9+-x",
                                          "9+0",
                                          "9+181",
                                          "9+181-LTS",
                                          "9.0.1",
                                          "9.0.4",
                                          "9.0.4.0.1",
                                          "9.0.4.1",
                                          "9.0.10",
                                          "10",
                                          "10.0.0.0.1",
                                          "11.0.9.1+1-LTS",
                                          "11.0.9.1",
                                          "11.0.10",
                                          "17.0.9+9",
                                          "17.0.9+9-LTS-201",
                                          "17.0.9+11",
                                          "17.0.15+6-Debian-1deb12u1",
                                          "21-internal-adhoc.user.jdk",
                                          "21+-foo.bar",
                                          "21-ea+-x",
                                          "25-ea+40",
                                          "25-ea-x",
                                          "25+1",
                                          "25.0.1",
                                          "25+1-a.b",
                                          "25+1-a-b",
                                          "25+1--",
                                          "25-0",
                                          "25-00",
                                          "25-99999999999999999999"};
  EXPECT_GT(ExpectSameOrder(texts), 35);
}

// Of pieces of versions, so that most are ones.
TEST(VersionJavaTest, RandomVersionsAreOrderedAsJavaDoes) {
  const std::vector<std::vector<std::string>> pieces = {{"9", "11", "17", "21"},
                                                        {"", "", ".0.1", ".0.2", ".1", ".0.0.1", ".0"},
                                                        {"", "", "-ea", "-Ea", "-2", "-10", "-rc1"},
                                                        {"", "", "+1", "+2", "+10", "+"},
                                                        {"", "", "-LTS", "-a.b", "-1", "-"}};
  std::mt19937 random(20);
  std::vector<std::string> texts(500);
  for (std::string& text : texts) {
    for (const std::vector<std::string>& choice : pieces) text += choice[random() % choice.size()];
  }
  EXPECT_GT(ExpectSameOrder(texts), 250);
}

}  // namespace
}  // namespace tests
