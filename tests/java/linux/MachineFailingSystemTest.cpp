// A system that interrupts reading, and fails in the middle of it. The linker leads its calls here.
#include <dirent.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "java/runtimes/MadeUpMachine.h"

namespace {

// What the next calls do: the error that each fails with, or 0. A read that does not fail reads one byte at most.
std::vector<int> s_errors;

// Whether this call fails, as it does with errno.
bool Fails() {
  if (s_errors.empty()) return false;
  errno = s_errors.front();
  s_errors.erase(s_errors.begin());
  return errno != 0;
}

}  // namespace

extern "C" {

ssize_t __real_read(int file, void* bytes, size_t count);
ssize_t __wrap_read(int file, void* bytes, size_t count) {
  const bool isShort = !s_errors.empty();
  if (Fails()) return -1;
  return __real_read(file, bytes, isShort ? std::min<size_t>(count, 1) : count);
}

dirent* __real_readdir(DIR* folder);
dirent* __wrap_readdir(DIR* folder) {
  if (Fails()) return nullptr;
  errno = 0;
  return __real_readdir(folder);
}

}  // extern "C"

namespace tests {
namespace {

using namespace torvan::java;
using namespace torvan::java::detail;

using testing::ElementsAre;
using testing::IsEmpty;

class MachineFailingSystemTest : public testing::Test {
 protected:
  void SetUp() override { machine.AddFile("file", "0123456789"); }
  void TearDown() override { s_errors.clear(); }
  std::optional<std::string> Front(std::vector<int> errors, std::size_t bytes = 100) {
    s_errors = std::move(errors);
    return machine.ReadFront(machine.Path("file"), bytes);
  }

  MadeUpMachine machine;
};

TEST_F(MachineFailingSystemTest, AnInterruptedReadIsRepeated) {
  EXPECT_EQ(Front({EINTR}), "0123456789");
  EXPECT_EQ(Front({0, EINTR, EINTR, 0, EINTR}), "0123456789");
  EXPECT_EQ(Front({EINTR, 0, 0, EINTR}, 4), "0123");
  EXPECT_THAT(s_errors, IsEmpty());
}

TEST_F(MachineFailingSystemTest, AReadThatFailsIsNoFront) {
  EXPECT_EQ(Front({EIO}), std::nullopt);
  EXPECT_EQ(Front({0, 0, EIO}), std::nullopt);  // what came before does not count
  EXPECT_EQ(Front({EINTR, EIO}), std::nullopt);
  EXPECT_THAT(s_errors, IsEmpty());
}

TEST_F(MachineFailingSystemTest, AFolderThatFailsInTheMiddleTellsWhatItHad) {
  for (const char* name : {"a", "b", "c"}) machine.AddFile("folder/" + std::string(name) + "/x");
  const std::string folder = machine.Path("folder");
  for (std::size_t told = 0; told < 5; ++told) {  // "." and ".." are among them
    s_errors.assign(told, 0);
    s_errors.push_back(EIO);
    const Listing listing = machine.FoldersIn(folder);
    EXPECT_EQ(listing.reason, "Input/output error");
    EXPECT_LE(listing.names.size(), told);
    EXPECT_GE(listing.names.size() + 2, told);
    EXPECT_TRUE(std::is_sorted(listing.names.begin(), listing.names.end()));
  }
  EXPECT_THAT(machine.FoldersIn(folder).names, ElementsAre("a", "b", "c"));
  EXPECT_EQ(machine.FoldersIn(folder).reason, "");
}

TEST_F(MachineFailingSystemTest, ARuntimeWhoseFilesFailIsRefusedForThat) {
  const std::string home = machine.AddRuntime("jdk", "17");
  machine.Set("JAVA_HOME", home);
  s_errors = {EIO};
  EXPECT_THAT(Lines(SearchOf(machine)),
              ElementsAre(home + ": its VM library cannot be read: " + home + "/" + LibraryFile + " (JAVA_HOME)"));
  s_errors = {EINTR, EINTR};
  EXPECT_THAT(Lines(SearchOf(machine)), ElementsAre(home + " 17 JAVA_HOME"));
}

}  // namespace
}  // namespace tests
