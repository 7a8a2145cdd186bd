// Links, and files that are not regular.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "java/runtimes/MadeUpMachine.h"

namespace tests {
namespace {

using namespace torvan::java;
using namespace torvan::java::detail;

using testing::ElementsAre;
using testing::IsEmpty;

class MachineLinksTest : public testing::Test {
 protected:
  void SetUp() override { machine.Set("HOME", machine.Path("user")); }
  std::vector<std::string> Found() { return Lines(SearchOf(machine)); }
  void Link(const std::string& name, const std::string& target) {
    const std::filesystem::path path = machine.Path(name);
    std::filesystem::create_directories(path.parent_path());
    std::filesystem::create_symlink(target, path);
  }

  MadeUpMachine machine;
};

TEST_F(MachineLinksTest, TheHomeIsTheRealOne) {
  const std::string home = machine.AddRuntime("store/jdk-17.0.15", "17.0.15");
  Link("alias", "store");
  Link("user/.jdks/default", machine.Path("alias/jdk-17.0.15"));
  Link("user/.jdks/other", "default");
  EXPECT_THAT(Found(), ElementsAre(home + " 17.0.15 " + machine.Path("user/.jdks")));
  machine.Set("JAVA_HOME", machine.Path("user/.jdks/other"));
  EXPECT_THAT(Found(), ElementsAre(home + " 17.0.15 JAVA_HOME"));
}

TEST_F(MachineLinksTest, TheProgramOfThePathLeadsToItsHome) {
  const std::string home = machine.AddRuntime("jvm/jdk", "17");
  Link("usr/bin/java", machine.Path("alternatives/java"));
  Link("alternatives/java", "../jvm/jdk/bin/java");
  machine.Set("PATH", machine.Path("usr/bin"));
  EXPECT_THAT(Found(), ElementsAre(home + " 17 PATH"));
}

TEST_F(MachineLinksTest, TheProgramInsideAKitOfVersion8LeadsToTheKit) {
  const std::string home = machine.AddRuntime("jvm/jdk8", "1.8.0_391");
  machine.AddProgram("jvm/jdk8/jre/bin/java");
  Link("usr/bin/java", "../../jvm/jdk8/jre/bin/java");
  machine.Set("PATH", machine.Path("usr/bin"));
  EXPECT_THAT(Found(), ElementsAre(home + " 1.8.0_391 PATH"));
}

TEST_F(MachineLinksTest, ALinkToAnotherProgramIsALauncher) {
  machine.AddProgram("usr/bin/manager");
  machine.AddProgram("manager/bin/manager");
  machine.AddFile("manager/release", "1.0\n");
  for (const char* target : {"../usr/bin/manager", "../manager/bin/manager"}) {
    Link("shims/java", target);
    machine.Set("PATH", machine.Path("shims"));
    EXPECT_THAT(Found(), ElementsAre(machine.Path("shims/java") +
                                     ": is a launcher and no link into a runtime; it is not executed to find out "
                                     "where it leads (PATH)"));
    std::filesystem::remove(machine.Path("shims/java"));
  }
}

TEST_F(MachineLinksTest, WhatMayNotBeRunDoesNotCount) {
  machine.AddFile("a/java");
  std::filesystem::create_directories(machine.Path("b/java"));
  Link("c/java", "nowhere");
  Link("d/java", "java");
  const std::string home = machine.AddRuntime("jdk", "17");
  machine.Set("PATH", machine.Path("a") + ":" + machine.Path("b") + ":" + machine.Path("c") + ":" + machine.Path("d") +
                          "::" + machine.Path("jdk/bin"));
  EXPECT_THAT(Found(), ElementsAre(home + " 17 PATH"));
}

TEST_F(MachineLinksTest, LoopsAreSurvived) {
  Link("a", "b");
  Link("b", "a");
  machine.Set("JAVA_HOME", machine.Path("a"));
  machine.Set("JDK_HOME", machine.Path("user/.jdks/self/self/self/jdk"));
  Link("user/.jdks/self", ".");
  Link("user/.jdks/loop", "loop");
  Link("user/.gradle/jdks/up", "../..");
  const std::string home = machine.AddRuntime("user/.jdks/jdk", "17");
  machine.AddFile("user/.jdks/broken/release", "JAVA_VERSION=\"17\"\n");
  Link("user/.jdks/broken/lib/server/libjvm.so", "libjvm.so");
  const std::string broken = machine.Path("user/.jdks/broken");
  EXPECT_THAT(
      Found(),
      ElementsAre(home + " 17 JDK_HOME", machine.Path("a") + ": Too many levels of symbolic links (JAVA_HOME)",
                  broken + ": its VM library cannot be reached: " + broken +
                      "/lib/server/libjvm.so: Too many levels of symbolic links (" + machine.Path("user/.jdks") + ")"));
}

TEST_F(MachineLinksTest, AReleaseFileThatIsALoopIsRefusedForThat) {
  const std::string home = machine.AddRuntime("jdk", "17");
  std::filesystem::remove(home + "/release");
  Link("jdk/release", "release");
  machine.Set("JAVA_HOME", home);
  EXPECT_THAT(Found(), ElementsAre(home + ": its release file cannot be reached: Too many levels of symbolic links "
                                          "(JAVA_HOME)"));
}

TEST_F(MachineLinksTest, WhyAPathIsNotToldIsTheSystemsReason) {
  Link("loop", "loop");
  EXPECT_EQ(machine.Hindrance(machine.Path("loop")), "Too many levels of symbolic links");
  EXPECT_EQ(machine.Hindrance(machine.Path("loop/below")), "Too many levels of symbolic links");
  EXPECT_EQ(machine.Hindrance(machine.Path(std::string(5000, 'x'))), "File name too long");
  Link("dangling", "nowhere");
  EXPECT_EQ(machine.Hindrance(machine.Path("dangling")), "");
  EXPECT_EQ(machine.FoldersIn(machine.Path("loop")).reason, "Too many levels of symbolic links");
}

TEST_F(MachineLinksTest, DevicesAndPipesAreNoFiles) {
  const std::string home = machine.AddRuntime("jdk", "17");
  machine.Set("JAVA_HOME", home);
  for (const char* device : {"/dev/zero", "/dev/null", "/dev/stdin", "/proc/self"}) {
    std::filesystem::remove(home + "/release");
    Link("jdk/release", device);
    EXPECT_THAT(Found(), ElementsAre(home + ": has no release file, which would tell the version (JAVA_HOME)"));
  }
  std::filesystem::remove(home + "/release");
  ASSERT_EQ(mkfifo((home + "/release").c_str(), 0600), 0);
  EXPECT_THAT(Found(), ElementsAre(home + ": has no release file, which would tell the version (JAVA_HOME)"));
  EXPECT_EQ(machine.ReadFront(home + "/release", 1), std::nullopt);  // and does not wait for a writer
  EXPECT_EQ(machine.ReadFront("/dev/zero", 1), std::nullopt);
}

TEST_F(MachineLinksTest, NamesThatAreNoUtf8AreKept) {
  const std::string home = machine.AddRuntime("user/.jdks/J\xE4va\n\x01", "17");
  EXPECT_THAT(Found(), ElementsAre(home + " 17 " + machine.Path("user/.jdks")));
}

TEST_F(MachineLinksTest, AFolderOfManyIsGoneThrough) {
  for (int i = 0; i < 500; ++i) std::filesystem::create_directories(machine.Path("user/.jdks/" + std::to_string(i)));
  const std::string home = machine.AddRuntime("user/.jdks/jdk", "17");
  EXPECT_THAT(Found(), ElementsAre(home + " 17 " + machine.Path("user/.jdks")));
}

std::size_t OpenDescriptors() {
  std::size_t count = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) ++count;
  return count;
}

TEST_F(MachineLinksTest, NoDescriptorIsKept) {
  machine.AddRuntime("user/.jdks/jdk", "17");
  machine.AddFile("user/.jdks/broken/lib/server/libjvm.so", "text");
  const std::size_t before = OpenDescriptors();
  for (int i = 0; i < 10; ++i) EXPECT_EQ(Found().size(), 2u);
  EXPECT_EQ(OpenDescriptors(), before);
}

}  // namespace
}  // namespace tests
