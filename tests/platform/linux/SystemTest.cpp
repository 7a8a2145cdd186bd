// Registry, modules and files of the native system.
#include "platform/System.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <thread>

#include "fakes/Allocations.h"
#include "fakes/DebugOut.h"
#include "fakes/WideText.h"
#include "platform/linux/Fixtures.h"

namespace tests {
namespace {

using namespace torvan::platform;

class SystemTest : public testing::Test {
 protected:
  Status AttributesError(const std::string& path) {
    EXPECT_EQ(0xFFFFFFFF, system.FileAttributes(Widen(path).c_str()));
    return system.LastError();
  }

  System& system = System::Native();
  TemporaryFolder folder;
};

TEST_F(SystemTest, RuntimesAreSeenInTheOwnViewOfTheRegistryOnly) {
  AddRuntime(folder, "java", "99.8.7", true);
  setenv("JAVA_HOME", folder.Path("java").c_str(), 1);
  RegistryKey key = nullptr;
  EXPECT_EQ(2, system.OpenKey(system.LocalMachine(), u"Software\\Wow6432Node\\JavaSoft\\Java Runtime Environment",
                              0x20019, &key));
  EXPECT_EQ(0,
            system.OpenKey(system.LocalMachine(), u"Software\\JavaSoft\\Java Development Kit\\99.8.7", 0x20019, &key));
  system.CloseKey(key);
  EXPECT_EQ(0, system.OpenKey(system.LocalMachine(), u"Software\\JavaSoft\\Java Runtime Environment", 0x20019, &key));
  RX::UniChar version[16] = {};
  unsigned int size = sizeof(version);
  EXPECT_EQ(0, system.QueryValue(key, u"CurrentVersion", version, &size));
  EXPECT_EQ("99.8.7", Narrow(version));
  system.CloseKey(key);
  unsetenv("JAVA_HOME");
}

TEST_F(SystemTest, RuntimesAreLookedForOnceWhereBothViewsAreOpened) {
  const DebugOut debugOut;
  setenv("JAVA_HOME", folder.Path("missing").c_str(), 1);
  RegistryKey key = nullptr;
  for (const RX::UniChar* path : {u"Software\\JavaSoft\\Missing", u"SOFTWARE\\WOW6432Node\\JavaSoft\\Missing"}) {
    EXPECT_EQ(2, system.OpenKey(system.LocalMachine(), path, 0x20019, &key));
  }
  EXPECT_EQ("torvan: JAVA_HOME is passed over: " + folder.Path("missing") + ": there is no such folder\n",
            debugOut.Text());
  unsetenv("JAVA_HOME");
}

TEST_F(SystemTest, TheRegistryIsOnlyRead) {
  RegistryKey key = nullptr;
  EXPECT_EQ(5, system.OpenKey(system.LocalMachine(), u"Software", 0x20006, &key));
}

TEST_F(SystemTest, RunningOutOfMemoryIsAnsweredWithItsStatusAndLosesNothing) {
  AddRuntime(folder, "java", "99.8.7", true);
  setenv("JAVA_HOME", folder.Path("java").c_str(), 1);
  for (int n = 1;; ++n) {
    ASSERT_LT(n, 10000);
    Allocations allocations;
    allocations.Fail(n);
    RegistryKey key = nullptr;
    const Status status =
        system.OpenKey(system.LocalMachine(), u"Software\\JavaSoft\\Java Runtime Environment\\99.8.7", 0x20019, &key);
    EXPECT_EQ(allocations.HasFailed() ? 8 : 0, status);
    if (status == 0) system.CloseKey(key);
    EXPECT_EQ(0u, allocations.Live());
    if (status == 0) break;
  }
  unsetenv("JAVA_HOME");

  Allocations allocations;
  allocations.Fail(1);
  EXPECT_EQ(8, AttributesError(folder.Path()));
  allocations.Fail(1);
  EXPECT_EQ(nullptr, system.LoadModule(Widen(ModuleFixture()).c_str()));
  EXPECT_EQ(0u, allocations.Live());
}

TEST_F(SystemTest, NoPathNamesNoModule) {
  EXPECT_EQ(nullptr, system.LoadModule(nullptr));
  EXPECT_EQ(nullptr, system.LoadModule(u""));
}

TEST_F(SystemTest, PathsAreUtf8) {
  const std::string path = folder.Path("J\xC3\xA4va \xF0\x9F\x98\x80.so");
  std::filesystem::copy_file(ModuleFixture(), path);
  EXPECT_EQ(0u, system.FileAttributes(Widen(path).c_str()) & 16);
  const Module module = system.LoadModule(Widen(path).c_str());
  ASSERT_NE(nullptr, module);
  EXPECT_NE(nullptr, system.FindSymbol(module, "FortyTwo"));
  system.UnloadModule(module);
}

TEST_F(SystemTest, ErrorsOfFilesAreWindowsCodes) {
  const std::string file = folder.AddFile("file");
  EXPECT_EQ(2, AttributesError(folder.Path("missing")));
  EXPECT_EQ(2, AttributesError(file + "/below"));
  EXPECT_EQ(2, AttributesError(""));
  EXPECT_EQ(31, AttributesError(folder.Path() + "/" + std::string(300, 'x')));
  EXPECT_EQ(0xFFFFFFFF, system.FileAttributes(nullptr));
  EXPECT_EQ(2, system.LastError());
}

TEST_F(SystemTest, AFileThatMayNotBeSeenIsDenied) {
  const std::string file = folder.AddFile("closed/file");
  ASSERT_EQ(0, chmod(folder.Path("closed").c_str(), 0));
  const uid_t user = geteuid();
  constexpr uid_t Nobody = 65534;
  ASSERT_EQ(0, seteuid(user == 0 ? Nobody : user)) << "every folder is open for root";
  EXPECT_EQ(5, AttributesError(file));
  ASSERT_EQ(0, seteuid(user));
  ASSERT_EQ(0, chmod(folder.Path("closed").c_str(), 0700));
}

TEST_F(SystemTest, EachThreadHasItsOwnLastError) {
  AttributesError(folder.Path("missing"));
  std::thread([this] { EXPECT_EQ(16u, system.FileAttributes(Widen(folder.Path()).c_str())); }).join();
  EXPECT_EQ(2, system.LastError());
}

}  // namespace
}  // namespace tests
