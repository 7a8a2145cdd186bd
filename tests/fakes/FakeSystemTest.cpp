#include "fakes/FakeSystem.h"

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace torvan::platform;

TEST(FakeSystemTest, IsUsedForTheLifeOfItsScope) {
  FakeSystem outer;
  FakeSystem inner;
  EXPECT_EQ(&System::Native(), &System::Current());
  {
    const SystemScope outerScope(outer);
    EXPECT_EQ(&outer, &System::Current());
    {
      const SystemScope innerScope(inner);
      EXPECT_EQ(&inner, &System::Current());
    }
    EXPECT_EQ(&outer, &System::Current());
  }
  EXPECT_EQ(&System::Native(), &System::Current());
}

TEST(FakeSystemTest, LogsRegistryCallsInOrderAndNamesWhatIsOpen) {
  FakeSystem system;
  system.SetValue("Software\\Java", "Home", "C:\\j");
  RegistryKey key = nullptr;
  RX::UniChar buffer[8] = {};
  unsigned int size = sizeof(buffer);
  system.OpenKey(system.LocalMachine(), RX_TEXT("Software\\Java"), 0x20019, &key);
  EXPECT_THAT(system.OpenKeys(), ElementsAre("Software\\Java"));
  system.QueryValue(key, RX_TEXT("Home"), buffer, &size);
  system.EnumerateKey(key, 3, buffer, &size);
  system.CloseKey(key);
  EXPECT_THAT(system.OpenKeys(), IsEmpty());
  EXPECT_THAT(system.Log(),
              ElementsAre("OpenKey(HKLM, Software\\Java, 0x20019)", "QueryValue(Software\\Java, Home, 16)",
                          "EnumerateKey(Software\\Java, 3, 10)", "CloseKey(Software\\Java)"));
}

TEST(FakeSystemTest, LogsModulesAndFilesInOrderAndNamesWhatIsLoaded) {
  FakeSystem system;
  int symbol = 0;
  system.AddModule("C:\\jvm.dll", {{"Create", &symbol}});
  const Module module = system.LoadModule(RX_TEXT("C:\\jvm.dll"));
  system.LoadModule(RX_TEXT("C:\\jvm.dll"));
  EXPECT_THAT(system.LoadedModules(), ElementsAre("C:\\jvm.dll", "C:\\jvm.dll"));
  EXPECT_EQ(&symbol, system.FindSymbol(module, "Create"));
  system.UnloadModule(module);
  EXPECT_THAT(system.LoadedModules(), ElementsAre("C:\\jvm.dll"));
  system.FileAttributes(RX_TEXT("C:\\f"));
  system.LastError();
  EXPECT_THAT(system.Log(),
              ElementsAre("LoadModule(C:\\jvm.dll)", "LoadModule(C:\\jvm.dll)", "FindSymbol(C:\\jvm.dll, Create)",
                          "UnloadModule(C:\\jvm.dll)", "FileAttributes(C:\\f)", "LastError()"));
}

TEST(FakeSystemTest, LogsProcessesInOrderAndNamesWhichHandlesAreOpen) {
  FakeSystem system;
  system.AddProcess();
  auto line = Widen("java -version ");
  StartedProcess started{};
  EXPECT_TRUE(system.StartProcess(line.data(), false, 0, &started));
  EXPECT_THAT(system.OpenHandles(), ElementsAre("process 1001", "thread 1001"));
  unsigned int code = 1;
  system.ReleaseHandle(started.thread);
  system.WaitFor(started.process, 0xFFFFFFFF);
  system.ExitCodeOf(started.process, &code);
  system.EndProcess(started.process, 5);
  system.SendConsoleEvent(1, started.processId);
  system.ReleaseHandle(started.process);
  EXPECT_THAT(system.OpenHandles(), IsEmpty());
  EXPECT_THAT(system.Log(),
              ElementsAre("StartProcess(java -version , false, 0)", "ReleaseHandle(thread 1001)",
                          "WaitFor(process 1001, 4294967295)", "ExitCodeOf(process 1001)",
                          "EndProcess(process 1001, 5)", "SendConsoleEvent(1, 1001)", "ReleaseHandle(process 1001)"));
}

TEST(FakeSystemTest, ReturnsTheStatusesOfItsScript) {
  FakeSystem system;
  system.AddKey("Good\\Child");
  system.FailOpen("Bad", 5);
  system.FailQuery("Good", "Value", 87);
  system.FailEnumeration("Good", 0, 6);
  system.FailAttributes("shared", 32);
  RegistryKey key = nullptr;
  unsigned int size = 0;
  EXPECT_EQ(5, system.OpenKey(system.LocalMachine(), RX_TEXT("Bad"), 0x20019, &key));
  EXPECT_EQ(0, system.OpenKey(system.LocalMachine(), RX_TEXT("Good"), 0x20019, &key));
  EXPECT_EQ(87, system.QueryValue(key, RX_TEXT("Value"), nullptr, &size));
  EXPECT_EQ(6, system.EnumerateKey(key, 0, nullptr, &size));
  EXPECT_EQ(0xFFFFFFFF, system.FileAttributes(RX_TEXT("shared")));
  EXPECT_EQ(32, system.LastError());
}

TEST(FakeSystemTest, AProcessHasTheTroublesOfItsScript) {
  FakeSystem system;
  FakeProcess script;
  script.timeouts = 2;
  script.exitCodeFails = true;
  script.hasThreadHandle = false;
  script.processId = 7;
  system.AddProcess(script);
  script.waitResult = 128;
  system.AddProcess(script);
  auto line = Widen("x");
  StartedProcess first{};
  StartedProcess second{};
  EXPECT_TRUE(system.StartProcess(line.data(), false, 0, &first));
  EXPECT_TRUE(system.StartProcess(line.data(), false, 0, &second));
  EXPECT_EQ(7u, first.processId);
  EXPECT_EQ(nullptr, first.thread);
  EXPECT_EQ(258u, system.WaitFor(first.process, 10));
  EXPECT_EQ(258u, system.WaitFor(first.process, 10));
  EXPECT_EQ(0u, system.WaitFor(first.process, 10));
  unsigned int code = 0;
  EXPECT_FALSE(system.ExitCodeOf(first.process, &code));
  EXPECT_EQ(128u, system.WaitFor(second.process, 0xFFFFFFFF));
}

TEST(FakeSystemTest, AHandleThatIsNotOpenFailsTheTest) {
  static FakeSystem system;
  static int stranger = 0;
  EXPECT_NONFATAL_FAILURE(system.CloseKey(&stranger), "is not an open key");
  EXPECT_NONFATAL_FAILURE(system.UnloadModule(&stranger), "is not a loaded module");
  EXPECT_NONFATAL_FAILURE(system.ReleaseHandle(&stranger), "is not an open handle");
}

}  // namespace
}  // namespace tests
