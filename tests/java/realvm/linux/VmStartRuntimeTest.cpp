// The runtime that a VM is started with when its host names none.
#include <ThisSystem.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "java/realvm/OwnProcess.h"
#include "java/runtimes/Headers.h"
#include "platform/TemporaryFolder.h"

namespace tests {
namespace {

namespace fs = std::filesystem;

using java::StartFailure;
using java::StartVm;
using java::VmSettings;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

// The home of the VM that this test is run with.
fs::path RealHome() {
  return fs::canonical(std::getenv("TORVAN_TEST_LIBJVM")).parent_path().parent_path().parent_path();
}

// A user's folder with runtimes, besides those that the machine has. No variable names a runtime.
class OwnRuntimes {
 public:
  OwnRuntimes() {
    for (const char* name : {"JAVA_HOME", "JDK_HOME", "PATH"}) SetVariable(name, "");
    SetVariable("HOME", m_folder.Path().c_str());
  }

  // One whose VM starts, which is that of the test, under another version.
  std::string Add(const std::string& version) {
    const std::string home = AddRelease(version);
    fs::create_directory_symlink(RealHome() / "lib", home + "/lib");
    return home;
  }
  // One that is found, but whose VM cannot be loaded.
  std::string AddBroken(const std::string& version) {
    m_folder.AddFile(".jdks/" + version + "/lib/server/libjvm.so", ElfHeader(62));
    return AddRelease(version);
  }

 private:
  std::string AddRelease(const std::string& version) {
    m_folder.AddFile(".jdks/" + version + "/release", "JAVA_VERSION=\"" + version + "\"\n");
    return m_folder.Path(".jdks/" + version);
  }

  const TemporaryFolder m_folder;
};

std::string FailureOf(const VmSettings& settings = {}) {
  return WhatOf<StartFailure>([&] { const java::Vm vm = StartVm(settings); });
}

// Starts a VM that must be that of the test.
void ExpectStart(const VmSettings& settings = {}) {
  const java::Vm vm = StartVm(settings);
  EXPECT_EQ(java::CallStatic<std::string>("java/lang/System", "getProperty", "java.home"), RealHome().string());
}

TEST(VmStartRuntimeTest, TheNewestIsTaken) {
  SKIP_BEFORE_JAVA_9("a runtime has other folders");
  InOwnProcess([] {
    OwnRuntimes runtimes;
    runtimes.AddBroken("998");
    runtimes.Add("999");
    ExpectStart();
  });
  InOwnProcess([] {
    OwnRuntimes runtimes;
    const std::string newest = runtimes.AddBroken("999");
    runtimes.Add("998");
    EXPECT_THAT(FailureOf(), StartsWith("The Java VM library " + newest + "/lib/server/libjvm.so cannot be loaded: "));
  });
}

TEST(VmStartRuntimeTest, ThatOfJavaHomeIsTakenBeforeANewerOne) {
  SKIP_BEFORE_JAVA_9("a runtime has other folders");
  InOwnProcess([] {
    OwnRuntimes runtimes;
    runtimes.AddBroken("999");
    SetVariable("JAVA_HOME", runtimes.Add("11.0.2").c_str());
    ExpectStart(VmSettings().JniVersion(JNI_VERSION_10));
  });
}

TEST(VmStartRuntimeTest, OneThatIsTooOldForTheJniVersionIsPassedOver) {
  SKIP_BEFORE_JAVA_9("a runtime has other folders");
  InOwnProcess([] {
    OwnRuntimes runtimes;
    SetVariable("JAVA_HOME", runtimes.AddBroken("9.0.4").c_str());
    EXPECT_THAT(FailureOf(VmSettings().JniVersion(0x00090000)), HasSubstr("/9.0.4/lib/server/libjvm.so cannot be"));
    runtimes.Add("999");
    ExpectStart(VmSettings().JniVersion(JNI_VERSION_10));
  });
  InOwnProcess([] {
    OwnRuntimes runtimes;
    SetVariable("JAVA_HOME", runtimes.AddBroken("1.7.0_80").c_str());
    EXPECT_THAT(FailureOf(), HasSubstr("/1.7.0_80/lib/server/libjvm.so cannot be"));
    runtimes.Add("999");
    ExpectStart(VmSettings().JniVersion(JNI_VERSION_1_8));
  });
}

TEST(VmStartRuntimeTest, WhereNoneIsNewEnoughTheFailureListsWhatThereIs) {
  SKIP_BEFORE_JAVA_9("a runtime has other folders");
  InOwnProcess([] {
    OwnRuntimes runtimes;
    const std::string home = runtimes.Add("999");
    EXPECT_THAT(FailureOf(VmSettings().JniVersion(0x04000000)),
                AllOf(StartsWith("No Java runtime that will do was found (at least 1024)\nFound, but of another "
                                 "version:\n  " +
                                 home + ": 999\n"),
                      HasSubstr("\nLooked at:\n  JAVA_HOME (not set)\n")));
  });
}

TEST(VmStartRuntimeTest, OfANumberThatIsNoJniVersionTheVmIsTheJudge) {
  SKIP_BEFORE_JAVA_9("a runtime has other folders");
  for (const jint version : {0, 0x00010000, -1}) {
    InOwnProcess([version] {
      OwnRuntimes runtimes;
      runtimes.Add("999");
      EXPECT_THAT(FailureOf(VmSettings().JniVersion(version)), HasSubstr("(JNI_EVERSION)"));
    });
  }
}

// Hides the runtimes of this machine from this process. Returns the system's error, or 0.
int HideRuntimes() {
  if (unshare(CLONE_NEWNS) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return errno;
  if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return errno;
  for (const java::Runtime& runtime : java::FindRuntimes().found) {
    if (mount("none", runtime.Home().c_str(), "tmpfs", 0, nullptr) != 0) return errno;
  }
  return 0;
}

// Whether a process of this user may do so: the system's error, or 0.
int TryToHideRuntimes() {
  const pid_t child = fork();
  if (child == 0) _exit(HideRuntimes());
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child) return errno;
  return WIFEXITED(status) ? WEXITSTATUS(status) : EFAULT;
}

TEST(VmStartRuntimeTest, OnAMachineWithoutJavaTheFailureListsWhereItLooked) {
  if (const int error = TryToHideRuntimes()) GTEST_SKIP() << "no folder can be hidden here: " << std::strerror(error);
  InOwnProcess([] {
    const OwnRuntimes none;
    ASSERT_EQ(HideRuntimes(), 0);
    EXPECT_THAT(FailureOf(), AllOf(StartsWith("No Java runtime that will do was found (at least 6)\n"),
                                   HasSubstr("Looked at:\n  JAVA_HOME (not set)\n  JDK_HOME (not set)\n"
                                             "  PATH (no java in it)\n"),
                                   HasSubstr("/usr: lib/jvm/*, ")));
  });
}

}  // namespace
}  // namespace tests
