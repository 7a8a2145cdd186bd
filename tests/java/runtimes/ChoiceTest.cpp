#include "java/runtimes/Choice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <torvan/java/Failure.h>

#include "java/runtimes/MadeUpMachine.h"

namespace tests {
namespace {

using namespace torvan::java;
using namespace torvan::java::detail;

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class ChoiceTest : public testing::Test {
 protected:
  std::string Chosen(const VersionRange& versions = {}) { return Choose(machine, versions).Version().ToString(); }
  std::string FailureOf(const VersionRange& versions = {}) {
    try {
      return Chosen(versions);
    } catch (const StartFailure& failure) {
      return failure.what();
    }
  }

  MadeUpMachine machine;
};

TEST_F(ChoiceTest, TheNewestThatFitsIsTaken) {
  machine.Set(UserVariable, machine.Path("user"));
  for (const char* version : {"1.8.0_391", "11.0.2", "17.0.9", "17.0.10", "21.0.1", "22-ea"}) {
    machine.AddRuntime("user/.jdks/" + std::string(version), version);
  }
  EXPECT_EQ(Chosen(), "22-ea");
  EXPECT_EQ(Chosen(AtLeast(11).AtMost(21)), "21.0.1");
  EXPECT_EQ(Chosen(AtMost(17)), "17.0.10");
  EXPECT_EQ(Chosen(AtMost(8)), "1.8.0_391");
  EXPECT_EQ(Chosen(AtMost("17.0.9")), "17.0.9");
  EXPECT_EQ(Chosen(AtLeast("11").AtMost("11.0.2")), "11.0.2");
}

TEST_F(ChoiceTest, ThatOfJavaHomeIsTakenWhereItFits) {
  machine.Set(UserVariable, machine.Path("user"));
  machine.AddRuntime("user/.jdks/new", "25");
  machine.Set("JAVA_HOME", machine.AddRuntime("old", "11.0.2"));
  EXPECT_EQ(Chosen(), "11.0.2");
  EXPECT_EQ(Chosen(AtLeast(11)), "11.0.2");
  EXPECT_EQ(Chosen(AtLeast(17)), "25");
}

TEST_F(ChoiceTest, APlaceThatSeveralVariablesNameIsReadOnce) {
  const std::string folder = machine.Path(OnThisSystem("programs", "home/linuxbrew/.linuxbrew"));
  for (const char* variable : {"HOMEBREW_PREFIX", "ProgramFiles", "ProgramW6432"}) machine.Set(variable, folder);
  const std::string text = FailureOf();
  const std::string line = "\n  " + folder + ": ";
  ASSERT_THAT(text, HasSubstr(line));
  EXPECT_EQ(text.find(line), text.rfind(line));
}

TEST_F(ChoiceTest, AMachineWithoutJavaTellsWhereWasLooked) {
  machine.Set(UserVariable, machine.Path("user"));
  const std::string text = FailureOf(AtLeast(11));
  EXPECT_THAT(text, StartsWith("No Java runtime that will do was found (at least 11)\n"
                               "Looked at:\n"
                               "  JAVA_HOME (not set)\n"
                               "  JDK_HOME (not set)\n"
                               "  PATH (no java in it)\n"));
  if (OnWindows) {
    EXPECT_THAT(text, HasSubstr("\n  registry, HKLM\\SOFTWARE, HKLM\\SOFTWARE\\WOW6432Node, HKCU\\SOFTWARE, "
                                "HKCU\\SOFTWARE\\WOW6432Node: JavaSoft\\Java Runtime Environment\\*, "));
    EXPECT_THAT(text, EndsWith("\n  " + machine.Path("user") +
                               ": .jdks\\*, .gradle\\jdks\\*, .gradle\\jdks\\*\\*, .jbang\\cache\\jdks\\*, "
                               ".sdkman\\candidates\\java\\*, .jabba\\jdk\\*, scoop\\apps\\*\\current"));
  } else {
    EXPECT_THAT(text,
                HasSubstr("\n  " + machine.Path() +
                          "/usr: lib/jvm/*, lib64/jvm/*, java/*, local/lib/jvm/*, local/java/*, local/openjdk*\n"));
    EXPECT_THAT(text, HasSubstr("/opt: *, java/*, jdk/*, jvm/*\n"));
    EXPECT_THAT(text, EndsWith("\n  " + machine.Path("user") +
                               ": .sdkman/candidates/java/*, .jdks/*, .gradle/jdks/*, .gradle/jdks/*/*, "
                               ".jbang/cache/jdks/*, .jabba/jdk/*, .asdf/installs/java/*, "
                               ".local/share/mise/installs/java/*, .jenv/versions/*"));
  }
  EXPECT_EQ(text.find("Refused"), std::string::npos);
  EXPECT_EQ(text.find("another version"), std::string::npos);
}

TEST_F(ChoiceTest, WhatIsThereAndWillNotDoIsNamed) {
  const std::string found = machine.AddRuntime("found", "1.8.0_391");
  const std::string refused = machine.AddRuntime("refused", "17");
  machine.AddFile(std::string("refused/") + LibraryFile, LibraryFor(ForeignMachine));
  machine.Set("JAVA_HOME", refused);
  machine.Set("JDK_HOME", found);
  machine.Set("PATH", machine.Path("found/bin"));
  const std::string program = ToText(ToPath(machine.Path(std::string("found/") + JavaFile)));
  EXPECT_THAT(FailureOf(AtLeast(11).AtMost(21)),
              StartsWith("No Java runtime that will do was found (at least 11 and at most 21)\n"
                         "Found, but of another version:\n"
                         "  " +
                         found +
                         ": 1.8.0_391\n"
                         "Refused:\n"
                         "  " +
                         refused +
                         ": its VM library is for aarch64, and this program for x86_64 (JAVA_HOME)\n"
                         "Looked at:\n"
                         "  JAVA_HOME: " +
                         refused +
                         "\n"
                         "  JDK_HOME: " +
                         found +
                         "\n"
                         "  PATH: " +
                         program + "\n"));
}

}  // namespace
}  // namespace tests
