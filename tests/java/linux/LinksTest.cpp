// Links, and files that are none.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "java/runtimes/MadeUpMachine.h"

namespace torvan::java::detail {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LinksTest : public ::testing::Test {
 protected:
  void SetUp() override { machine.Set("HOME", machine.Path("user")); }
  std::vector<std::string> Found() { return Lines(SearchOf(machine)); }

  MadeUpMachine machine;
};

TEST_F(LinksTest, TheHomeIsTheRealOne) {
  const std::string home = machine.AddRuntime("store/jdk-17.0.15", "17.0.15");
  machine.Link("alias", "store");
  machine.Link("user/.jdks/default", machine.Path("alias/jdk-17.0.15"));
  machine.Link("user/.jdks/other", "default");
  EXPECT_THAT(Found(), ElementsAre(home + " 17.0.15 " + machine.Path("user/.jdks")));
  machine.Set("JAVA_HOME", machine.Path("user/.jdks/other"));
  EXPECT_THAT(Found(), ElementsAre(home + " 17.0.15 JAVA_HOME"));
}

TEST_F(LinksTest, TheProgramOfThePathLeadsToItsHome) {
  const std::string home = machine.AddRuntime("jvm/jdk", "17");
  machine.Link("usr/bin/java", machine.Path("alternatives/java"));
  machine.Link("alternatives/java", "../jvm/jdk/bin/java");
  machine.Set("PATH", machine.Path("usr/bin"));
  EXPECT_THAT(Found(), ElementsAre(home + " 17 PATH"));
}

TEST_F(LinksTest, TheProgramInsideAKitOfVersion8LeadsToTheKit) {
  const std::string home = machine.AddRuntime("jvm/jdk8", "1.8.0_391");
  machine.AddProgram("jvm/jdk8/jre/bin/java");
  machine.Link("usr/bin/java", "../../jvm/jdk8/jre/bin/java");
  machine.Set("PATH", machine.Path("usr/bin"));
  EXPECT_THAT(Found(), ElementsAre(home + " 1.8.0_391 PATH"));
}

TEST_F(LinksTest, ALinkToAnotherProgramIsALauncher) {
  machine.AddProgram("usr/bin/manager");
  machine.AddProgram("manager/bin/manager");
  machine.AddFile("manager/release", "1.0\n");
  for (const char* target : {"../usr/bin/manager", "../manager/bin/manager"}) {
    machine.Link("shims/java", target);
    machine.Set("PATH", machine.Path("shims"));
    EXPECT_THAT(Found(), ElementsAre(machine.Path("shims/java") +
                                     ": is a launcher and no link into a runtime; it is not executed to find out "
                                     "where it leads (PATH)"));
    std::filesystem::remove(machine.Path("shims/java"));
  }
}

TEST_F(LinksTest, WhatMayNotBeRunDoesNotCount) {
  machine.AddFile("a/java");
  std::filesystem::create_directories(machine.Path("b/java"));
  machine.Link("c/java", "nowhere");
  machine.Link("d/java", "java");
  const std::string home = machine.AddRuntime("jdk", "17");
  machine.Set("PATH", machine.Path("a") + ":" + machine.Path("b") + ":" + machine.Path("c") + ":" + machine.Path("d") +
                          "::" + machine.Path("jdk/bin"));
  EXPECT_THAT(Found(), ElementsAre(home + " 17 PATH"));
}

TEST_F(LinksTest, LoopsAreSurvived) {
  machine.Link("a", "b");
  machine.Link("b", "a");
  machine.Set("JAVA_HOME", machine.Path("a"));
  machine.Set("JDK_HOME", machine.Path("user/.jdks/self/self/self/jdk"));
  machine.Link("user/.jdks/self", ".");
  machine.Link("user/.jdks/loop", "loop");
  machine.Link("user/.gradle/jdks/up", "../..");
  const std::string home = machine.AddRuntime("user/.jdks/jdk", "17");
  machine.AddFile("user/.jdks/broken/release", "JAVA_VERSION=\"17\"\n");
  machine.Link("user/.jdks/broken/lib/server/libjvm.so", "libjvm.so");
  EXPECT_THAT(Found(),
              ElementsAre(home + " 17 JDK_HOME", machine.Path("a") + ": Too many levels of symbolic links (JAVA_HOME)",
                          machine.Path("user/.jdks/broken") + ": has no VM library such as lib/server/libjvm.so (" +
                              machine.Path("user/.jdks") + ")"));
}

TEST_F(LinksTest, DevicesAndPipesAreNoFiles) {
  const std::string home = machine.AddRuntime("jdk", "17");
  machine.Set("JAVA_HOME", home);
  for (const char* device : {"/dev/zero", "/dev/null", "/dev/stdin", "/proc/self"}) {
    std::filesystem::remove(home + "/release");
    machine.Link("jdk/release", device);
    EXPECT_THAT(Found(), ElementsAre(home + ": has no release file, which would tell the version (JAVA_HOME)"));
  }
  std::filesystem::remove(home + "/release");
  ASSERT_EQ(mkfifo((home + "/release").c_str(), 0600), 0);
  EXPECT_THAT(Found(), ElementsAre(home + ": has no release file, which would tell the version (JAVA_HOME)"));
  EXPECT_EQ(machine.ReadFront(home + "/release", 1), std::nullopt);  // and does not wait for a writer
  EXPECT_EQ(machine.ReadFront("/dev/zero", 1), std::nullopt);
}

TEST_F(LinksTest, NamesThatAreNoUtf8AreKept) {
  const std::string home = machine.AddRuntime("user/.jdks/J\xE4va\n\x01", "17");
  EXPECT_THAT(Found(), ElementsAre(home + " 17 " + machine.Path("user/.jdks")));
}

TEST_F(LinksTest, AFolderOfManyIsGoneThrough) {
  for (int i = 0; i < 500; ++i) std::filesystem::create_directories(machine.Path("user/.jdks/" + std::to_string(i)));
  const std::string home = machine.AddRuntime("user/.jdks/jdk", "17");
  EXPECT_THAT(Found(), ElementsAre(home + " 17 " + machine.Path("user/.jdks")));
}

std::size_t OpenDescriptors() {
  std::size_t count = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) ++count;
  return count;
}

TEST_F(LinksTest, NoDescriptorIsKept) {
  machine.AddRuntime("user/.jdks/jdk", "17");
  machine.AddFile("user/.jdks/broken/lib/server/libjvm.so", "text");
  const std::size_t before = OpenDescriptors();
  for (int i = 0; i < 10; ++i) EXPECT_EQ(Found().size(), 2u);
  EXPECT_EQ(OpenDescriptors(), before);
}

}  // namespace
}  // namespace torvan::java::detail
