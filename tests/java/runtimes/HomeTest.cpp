#include "java/runtimes/Home.h"

#include <gtest/gtest.h>

#include "java/runtimes/MadeUpMachine.h"

namespace tests {
namespace {

using namespace torvan::java;
using namespace torvan::java::detail;

constexpr const char* NoLibrary =
    OnThisSystem("has no VM library such as bin\\server\\jvm.dll", "has no VM library such as lib/server/libjvm.so");

class HomeTest : public testing::Test {
 protected:
  HomeReading Read(const std::string& home) { return ReadHome(machine, ToPath(machine.Path(home)), "place"); }
  std::string ReasonOf(const std::string& home) {
    const HomeReading reading = Read(home);
    return reading.runtime ? "none" : reading.reason;
  }
  std::string HomeOfJreIn(const std::string& folder) {
    return ToText(HomeOf(machine, ToPath(machine.Path(folder + "/jre"))));
  }
  std::string Below(const std::string& home, const std::string& file) { return machine.Path(home + "/" + file); }

  MadeUpMachine machine;
};

TEST_F(HomeTest, ARuntimeTellsAllOfItself) {
  machine.AddRuntime("jdk", "17.0.15");
  const HomeReading reading = Read("jdk");
  ASSERT_TRUE(reading.runtime) << reading.reason;
  EXPECT_EQ(ToText(reading.runtime->Home()), machine.Path("jdk"));
  EXPECT_EQ(reading.runtime->Version(), Version::Parse("17.0.15"));
  EXPECT_EQ(reading.runtime->Vendor(), "Maker");
  EXPECT_EQ(reading.runtime->Cpu(), "x86_64");
  EXPECT_TRUE(reading.runtime->IsJdk());
  EXPECT_EQ(ToText(reading.runtime->Library()), Below("jdk", LibraryFile));
  EXPECT_EQ(ToText(reading.runtime->Java()), Below("jdk", JavaFile));
  EXPECT_EQ(reading.runtime->FoundIn(), "place");
}

TEST_F(HomeTest, WithoutACompilerItIsNoJdk) {
  machine.AddRuntime("jre", "17.0.15", false);
  const HomeReading reading = Read("jre");
  ASSERT_TRUE(reading.runtime) << reading.reason;
  EXPECT_FALSE(reading.runtime->IsJdk());
}

TEST_F(HomeTest, WithoutItsProgramARuntimeIsOne) {
  machine.AddFile("image/release", "JAVA_VERSION=\"21.0.6\"\n");
  machine.AddFile(std::string("image/") + LibraryFile, LibraryFor(OwnMachine));
  const HomeReading reading = Read("image");
  ASSERT_TRUE(reading.runtime) << reading.reason;
  EXPECT_TRUE(reading.runtime->Java().empty());
  EXPECT_EQ(reading.runtime->Vendor(), "");
}

TEST_F(HomeTest, AKitOfVersion8IsOneRuntime) {
  machine.AddFile("jdk8/release", "JAVA_VERSION=\"1.8.0_391\"\n");
  machine.AddFile(std::string("jdk8/") + LibraryFileOf8, LibraryFor(OwnMachine));
  machine.AddProgram(std::string("jdk8/") + JavaFile);
  machine.AddProgram(std::string("jdk8/") + CompilerFile);
  const HomeReading reading = Read("jdk8");
  ASSERT_TRUE(reading.runtime) << reading.reason;
  EXPECT_EQ(reading.runtime->Version().Feature(), 8);
  EXPECT_TRUE(reading.runtime->IsJdk());
  EXPECT_EQ(ToText(reading.runtime->Library()), Below("jdk8", LibraryFileOf8));
  EXPECT_EQ(ToText(HomeOf(machine, ToPath(machine.Path("jdk8/jre")))), machine.Path("jdk8"));
}

TEST_F(HomeTest, AFolderNamedJreWithItsOwnReleaseFileIsItsOwnHome) {
  machine.AddRuntime("application/jre", "17", false);
  EXPECT_EQ(HomeOfJreIn("application"), machine.Path("application/jre"));
  machine.AddFile("application/release", "1.0\n");  // the application's
  EXPECT_EQ(HomeOfJreIn("application"), machine.Path("application/jre"));
  machine.AddProgram(std::string("tools/") + CompilerFile);
  machine.AddFile("tools/jre/release", "JAVA_VERSION=\"17\"\n");  // and no library, which is to be said of this folder
  EXPECT_EQ(HomeOfJreIn("tools"), machine.Path("tools/jre"));
}

TEST_F(HomeTest, AFolderNamedJreWithoutAReleaseFileBelongsToTheKit) {
  EXPECT_EQ(HomeOfJreIn("application"), machine.Path("application/jre"));  // no kit
  machine.AddProgram(std::string("kit/") + CompilerFile);
  EXPECT_EQ(HomeOfJreIn("kit"), machine.Path("kit"));
  machine.AddFile("image/release", "JAVA_VERSION=\"1.8.0_391\"\n");
  EXPECT_EQ(HomeOfJreIn("image"), machine.Path("image"));
}

TEST_F(HomeTest, TheLibraryMayBeInOtherPlaces) {
  using Files = std::vector<std::string>;
  const Files libraries = OnWindows ? Files{"bin/client/jvm.dll", "bin/j9vm/jvm.dll", "jre/bin/server/jvm.dll"}
                                    : Files{"lib/client/libjvm.so",         "lib/j9vm/libjvm.so",
                                            "lib/zero/libjvm.so",           "lib/amd64/server/libjvm.so",
                                            "jre/lib/amd64/j9vm/libjvm.so", "jre/lib/aarch64/server/libjvm.so",
                                            "lib/i386/client/libjvm.so"};
  for (const std::string& library : libraries) {
    const std::string home = "jdk" + std::to_string(&library - libraries.data());
    machine.AddFile(home + "/release", "JAVA_VERSION=\"17\"\n");
    machine.AddFile(home + "/" + library, LibraryFor(OwnMachine));
    const HomeReading reading = Read(home);
    ASSERT_TRUE(reading.runtime) << reading.reason;
    EXPECT_EQ(ToText(reading.runtime->Library()), Below(home, library));
  }
}

TEST_F(HomeTest, WithoutALibraryItIsRefused) {
  machine.AddFile("jdk/release", "JAVA_VERSION=\"17\"\n");
  machine.AddProgram(std::string("jdk/") + JavaFile);
  EXPECT_EQ(ReasonOf("jdk"), NoLibrary);
  EXPECT_TRUE(Read("jdk").hasProgram);
  EXPECT_TRUE(Read("jdk").hasLibraryOrRelease);
  EXPECT_FALSE(Read("nowhere").hasProgram);
  EXPECT_FALSE(Read("nowhere").hasLibraryOrRelease);
}

// A machine that does not tell what is in a folder "locked".
class LockedMachine : public MadeUpMachine {
 public:
  bool IsFile(const std::filesystem::path& path) const override {
    return !IsLocked(path) && MadeUpMachine::IsFile(path);
  }
  std::string Hindrance(const std::filesystem::path& path) const override {
    return IsLocked(path) ? "Permission denied" : MadeUpMachine::Hindrance(path);
  }

 private:
  static bool IsLocked(const std::filesystem::path& path) { return ToText(path).find("locked") != std::string::npos; }
};

TEST(HomeLockedTest, WhatCannotBeReachedIsRefusedWithTheSystemsReason) {
  LockedMachine machine;
  const auto reasonOf = [&machine](const std::string& home) {
    return ReadHome(machine, ToPath(machine.Path(home)), "place").reason;
  };
  machine.AddRuntime("locked", "17");
  EXPECT_EQ(reasonOf("locked"), "its VM library cannot be reached: " +
                                    machine.Path(std::string("locked/") + LibraryFile) + ": Permission denied");
  EXPECT_EQ(reasonOf("none"), NoLibrary);
}

TEST_F(HomeTest, ALibraryForAnotherCpuIsRefused) {
  machine.AddRuntime("jdk", "17");
  machine.AddFile(std::string("jdk/") + LibraryFile, LibraryFor(ForeignMachine));
  EXPECT_EQ(ReasonOf("jdk"), "its VM library is for aarch64, and this program for x86_64");
}

TEST_F(HomeTest, ALibraryThatIsNoneIsRefused) {
  machine.AddRuntime("jdk", "17");
  const std::string format = OnThisSystem("PE", "ELF");
  for (const std::string& text : {std::string(), std::string("text"), std::string(100000, '\0')}) {
    machine.AddFile(std::string("jdk/") + LibraryFile, text);
    EXPECT_EQ(ReasonOf("jdk"), "its VM library is no " + format + " library: " + Below("jdk", LibraryFile));
  }
}

TEST_F(HomeTest, WithoutAVersionItIsRefused) {
  machine.AddFile(std::string("jdk/") + LibraryFile, LibraryFor(OwnMachine));
  EXPECT_EQ(ReasonOf("jdk"), "has no release file, which would tell the version");
  machine.AddFile("jdk/release", "IMPLEMENTOR=\"Maker\"\n");
  EXPECT_EQ(ReasonOf("jdk"), "its release file tells no version");
  machine.AddFile("jdk/release", "JAVA_VERSION=\"seventeen\"\n");
  EXPECT_EQ(ReasonOf("jdk"), "its release file tells \"seventeen\", which is not a version of Java");
}

TEST_F(HomeTest, OneForAnotherCLibraryIsRefused) {
  machine.AddRuntime("jdk", "17");
  for (const char* libc : {"", "gnu", "default", "musl"}) {
    machine.AddFile("jdk/release", "JAVA_VERSION=\"17\"\nLIBC=\"" + std::string(libc) + "\"\n");
    const bool isForeign = !OnWindows && libc == std::string("musl");
    EXPECT_EQ(Read("jdk").reason, isForeign
                                      ? "its release file tells that it is for the C library \"musl\", which this "
                                        "program does not use"
                                      : "");
  }
}

TEST_F(HomeTest, OfAHugeReleaseFileTheFrontCounts) {
  machine.AddRuntime("jdk", "17");
  const std::string version = "JAVA_VERSION=\"21\"\n";
  const std::size_t most = 256 * 1024;
  machine.AddFile("jdk/release", "X=\"" + std::string(most - version.size() - 5, 'x') + "\"\n" + version);
  ASSERT_TRUE(Read("jdk").runtime);
  EXPECT_EQ(Read("jdk").runtime->Version().Feature(), 21);
  machine.AddFile("jdk/release", std::string(64 * most, '\n') + version);
  EXPECT_EQ(ReasonOf("jdk"), "its release file tells no version");
}

}  // namespace
}  // namespace tests
