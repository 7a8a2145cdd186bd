// What every System must answer, real or fake.
#include <gmock/gmock.h>

#include "fakes/WideText.h"
#include "platform/World.h"

namespace tests {
namespace {

using testing::Contains;
using namespace torvan::platform;

class SystemContractTest : public testing::Test {
 protected:
  SystemContractTest() : world(MakeWorld()), system(world->GetSystem()) {}
  ~SystemContractTest() override { world->ExpectNothingOpen(); }

  RegistryKey Open(const std::string& path, RegistryKey root = nullptr) {
    RegistryKey key = nullptr;
    EXPECT_EQ(0, system.OpenKey(root != nullptr ? root : system.LocalMachine(), Widen(path).c_str(), 0x20019, &key));
    return key;
  }
  RegistryKey OpenLeaf() { return Open(world->key + "\\" + world->leafKey); }
  unsigned int SizeOfValue() { return static_cast<unsigned int>((Widen(world->value).size() + 1) * 2); }

  StartedProcess Start(const std::string& commandLine) {
    WideText line = Widen(commandLine);
    StartedProcess started{};
    EXPECT_TRUE(system.StartProcess(line.data(), false, 0, &started)) << commandLine;
    if (started.thread != nullptr) system.ReleaseHandle(started.thread);
    return started;
  }

  std::unique_ptr<World> world;
  System& system;
};

// --- Registry ---

TEST_F(SystemContractTest, AMissingKeyIsNotFound) {
  RegistryKey key = nullptr;
  EXPECT_EQ(2, system.OpenKey(system.LocalMachine(), RX_TEXT("Software\\TorvanMissing\\Key"), 0x20019, &key));
}

TEST_F(SystemContractTest, AKeyOpensBelowAnOpenKeyAsBelowTheRoot) {
  const RegistryKey parent = Open(world->key);
  const RegistryKey child = Open(world->leafKey, parent);
  EXPECT_EQ(0, system.CloseKey(parent));
  unsigned int size = 0;
  EXPECT_EQ(0, system.QueryValue(child, Widen(world->valueName).c_str(), nullptr, &size));
  EXPECT_EQ(SizeOfValue(), size);
  EXPECT_EQ(0, system.CloseKey(child));
}

TEST_F(SystemContractTest, NamesOfKeysAndValuesCompareWithoutRegardToCase) {
  std::string upper = world->key + "\\" + world->leafKey;
  for (char& byte : upper) byte = static_cast<char>(std::toupper(static_cast<unsigned char>(byte)));
  std::string name = world->valueName;
  for (char& byte : name) byte = static_cast<char>(std::toupper(static_cast<unsigned char>(byte)));
  const RegistryKey key = Open(upper);
  unsigned int size = 0;
  EXPECT_EQ(0, system.QueryValue(key, Widen(name).c_str(), nullptr, &size));
  EXPECT_EQ(0, system.CloseKey(key));
}

TEST_F(SystemContractTest, AMissingValueIsNotFound) {
  const RegistryKey key = OpenLeaf();
  RX::UniChar buffer[4] = {};
  unsigned int size = sizeof(buffer);
  EXPECT_EQ(2, system.QueryValue(key, RX_TEXT("TorvanMissing"), buffer, &size));
  EXPECT_EQ(0, system.CloseKey(key));
}

TEST_F(SystemContractTest, AValueComesWithItsTerminatingZeroAndItsSizeInBytes) {
  const RegistryKey key = OpenLeaf();
  WideText buffer(500, RX::UniChar('#'));
  unsigned int size = 1000;
  EXPECT_EQ(0, system.QueryValue(key, Widen(world->valueName).c_str(), buffer.data(), &size));
  EXPECT_EQ(SizeOfValue(), size);
  EXPECT_EQ(world->value, Narrow(buffer.c_str()));
  EXPECT_EQ(RX::UniChar('#'), buffer[size / 2]) << "nothing is written after the value";
  EXPECT_EQ(0, system.CloseKey(key));
}

TEST_F(SystemContractTest, ABufferAsLargeAsTheValueIsLargeEnough) {
  const RegistryKey key = OpenLeaf();
  WideText buffer(500, RX::UniChar('#'));
  unsigned int size = SizeOfValue();
  EXPECT_EQ(0, system.QueryValue(key, Widen(world->valueName).c_str(), buffer.data(), &size));
  EXPECT_EQ(world->value, Narrow(buffer.c_str()));
  EXPECT_EQ(0, system.CloseKey(key));
}

TEST_F(SystemContractTest, ABufferTooSmallIsAnsweredWithMoreDataAndTheSizeNeeded) {
  const RegistryKey key = OpenLeaf();
  RX::UniChar buffer[500] = {};
  unsigned int size = SizeOfValue() - 1;
  EXPECT_EQ(234, system.QueryValue(key, Widen(world->valueName).c_str(), buffer, &size));
  EXPECT_EQ(SizeOfValue(), size);
  EXPECT_EQ(0, system.CloseKey(key));
}

TEST_F(SystemContractTest, EverySubkeyIsEnumeratedOnceAndThenThereAreNoMoreItems) {
  const RegistryKey key = Open(world->key);
  std::vector<std::string> names;
  Status status = 0;
  for (unsigned int index = 0; status == 0; ++index) {
    RX::UniChar name[256] = {};
    unsigned int length = 256;
    status = system.EnumerateKey(key, index, name, &length);
    if (status != 0) continue;
    EXPECT_EQ(Widen(Narrow(name)).size(), length) << "the zero does not count";
    EXPECT_THAT(names, testing::Not(Contains(Narrow(name))));
    names.push_back(Narrow(name));
  }
  EXPECT_EQ(259, status);
  for (const std::string& subKey : world->subKeys) EXPECT_THAT(names, Contains(subKey));
  for (const std::string& name : names) EXPECT_EQ(0, system.CloseKey(Open(name, key)));
  EXPECT_EQ(0, system.CloseKey(key));
}

TEST_F(SystemContractTest, ANameBufferWithoutRoomForTheZeroIsAnsweredWithMoreData) {
  const RegistryKey key = Open(world->key);
  RX::UniChar name[256] = {};
  unsigned int length = 256;
  ASSERT_EQ(0, system.EnumerateKey(key, 0, name, &length));
  const unsigned int needed = length;
  EXPECT_EQ(234, system.EnumerateKey(key, 0, name, &length));
  length = needed + 1;
  EXPECT_EQ(0, system.EnumerateKey(key, 0, name, &length));
  EXPECT_EQ(0, system.CloseKey(key));
}

TEST_F(SystemContractTest, AKeyWithoutSubkeysHasNoItems) {
  const RegistryKey key = OpenLeaf();
  RX::UniChar name[256] = {};
  unsigned int length = 256;
  EXPECT_EQ(259, system.EnumerateKey(key, 0, name, &length));
  EXPECT_EQ(0, system.CloseKey(key));
}

// --- Modules ---

TEST_F(SystemContractTest, AMissingModuleOrAnEmptyPathLoadsNothing) {
  EXPECT_EQ(nullptr, system.LoadModule(Widen(world->missing).c_str()));
  EXPECT_EQ(nullptr, system.LoadModule(RX_TEXT("")));
}

TEST_F(SystemContractTest, AFunctionOfAModuleIsFoundByItsName) {
  const Module module = system.LoadModule(Widen(world->module).c_str());
  ASSERT_NE(nullptr, module) << world->module;
  void* const function = system.FindSymbol(module, world->function.c_str());
  ASSERT_NE(nullptr, function);
  EXPECT_EQ(42, reinterpret_cast<int (*)()>(function)());
  EXPECT_EQ(nullptr, system.FindSymbol(module, "TorvanMissing"));
  system.UnloadModule(module);
}

TEST_F(SystemContractTest, AModuleLoadedTwiceStaysUntilItIsUnloadedTwice) {
  const Module first = system.LoadModule(Widen(world->module).c_str());
  const Module second = system.LoadModule(Widen(world->module).c_str());
  EXPECT_EQ(first, second);
  system.UnloadModule(first);
  EXPECT_NE(nullptr, system.FindSymbol(second, world->function.c_str()));
  system.UnloadModule(second);
}

// --- Files ---

TEST_F(SystemContractTest, OnlyAFolderHasTheDirectoryAttribute) {
  const unsigned int file = system.FileAttributes(Widen(world->file).c_str());
  EXPECT_NE(0xFFFFFFFF, file);
  EXPECT_EQ(0u, file & 16);
  const unsigned int directory = system.FileAttributes(Widen(world->directory).c_str());
  EXPECT_NE(0xFFFFFFFF, directory);
  EXPECT_EQ(16u, directory & 16);
}

TEST_F(SystemContractTest, AMissingFileHasNoAttributesAndIsNotFound) {
  EXPECT_EQ(0xFFFFFFFF, system.FileAttributes(Widen(world->missing).c_str()));
  EXPECT_EQ(2, system.LastError());
}

// --- Processes ---

TEST_F(SystemContractTest, AMissingProgramDoesNotStart) {
  WideText line = Widen("\"" + world->missing + "\" argument ");
  StartedProcess started{};
  EXPECT_FALSE(system.StartProcess(line.data(), false, 0, &started));
}

TEST_F(SystemContractTest, AnEndlessWaitSeesTheEndAndThenTheExitCodeIsThere) {
  const StartedProcess started = Start(world->ProcessThatExits(7));
  EXPECT_NE(0u, started.processId);
  EXPECT_EQ(0u, system.WaitFor(started.process, 0xFFFFFFFF));
  unsigned int code = 0;
  EXPECT_TRUE(system.ExitCodeOf(started.process, &code));
  EXPECT_EQ(7u, code);
  EXPECT_EQ(0u, system.WaitFor(started.process, 0)) << "an ended process stays ended";
  system.ReleaseHandle(started.process);
}

TEST_F(SystemContractTest, AWaitForARunningProcessTimesOutAndItsExitCodeSaysThatItRuns) {
  const StartedProcess started = Start(world->ProcessThatRuns());
  EXPECT_EQ(258u, system.WaitFor(started.process, 0));
  EXPECT_EQ(258u, system.WaitFor(started.process, 20));
  unsigned int code = 0;
  EXPECT_TRUE(system.ExitCodeOf(started.process, &code));
  EXPECT_EQ(259u, code);
  EXPECT_TRUE(system.EndProcess(started.process, 0));
  EXPECT_EQ(0u, system.WaitFor(started.process, 0xFFFFFFFF));
  system.ReleaseHandle(started.process);
}

TEST_F(SystemContractTest, AnEndedProcessKeepsTheExitCodeItWasEndedWith) {
  for (const unsigned int code : {0u, 77u}) {
    const StartedProcess started = Start(world->ProcessThatRuns());
    EXPECT_TRUE(system.EndProcess(started.process, code));
    EXPECT_EQ(0u, system.WaitFor(started.process, 0xFFFFFFFF));
    unsigned int seen = 1;
    EXPECT_TRUE(system.ExitCodeOf(started.process, &seen));
    EXPECT_EQ(code, seen);
    system.EndProcess(started.process, 5);  // a failure on Windows, but not on every stand-in for it
    EXPECT_TRUE(system.ExitCodeOf(started.process, &seen));
    EXPECT_EQ(code, seen);
    system.ReleaseHandle(started.process);
  }
}

TEST_F(SystemContractTest, ProcessesThatRunTogetherHaveDifferentIds) {
  const StartedProcess first = Start(world->ProcessThatRuns());
  const StartedProcess second = Start(world->ProcessThatRuns());
  EXPECT_NE(first.processId, second.processId);
  for (const StartedProcess& started : {first, second}) {
    EXPECT_TRUE(system.EndProcess(started.process, 0));
    EXPECT_EQ(0u, system.WaitFor(started.process, 0xFFFFFFFF));
    system.ReleaseHandle(started.process);
  }
}

}  // namespace
}  // namespace tests
