// How a child begins.
#include "platform/linux/ChildTest.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <fstream>
#include <iterator>

#include "fakes/Allocations.h"
#include "platform/linux/ForkedProcess.h"

namespace tests {
namespace {

using namespace torvan::platform;

using SpawnTest = ChildTest;

TEST_F(SpawnTest, TheArgumentsArriveAsTheyWereQuoted) {
  const TemporaryFolder folder;
  const std::string file = folder.Path("a file");
  EXPECT_EQ(0u, Run("write \"" + file + "\" \"-cp\" \"a b\" \"\" x\\\"y \xC3\xA4 "));
  std::ifstream written(file);
  EXPECT_EQ("-cp\na b\n\nx\"y\n\xC3\xA4\n", std::string(std::istreambuf_iterator<char>(written), {}));
}

TEST_F(SpawnTest, AProgramWithoutAPathIsSearchedFor) {
  auto line = Widen("sh -c \"exit 5\"");
  StartedProcess started{};
  ASSERT_TRUE(system.StartProcess(line.data(), false, 0, &started));
  EXPECT_EQ(5u, Finish(started));
}

TEST_F(SpawnTest, WhatCannotBeExecutedDoesNotStart) {
  const TemporaryFolder folder;
  for (const std::string& program : {folder.Path("missing"), folder.AddFile("text", "no program"), folder.Path(),
                                     folder.AddFile("file") + "/below", std::string()}) {
    auto line = Widen("\"" + program + "\"");
    StartedProcess started{};
    EXPECT_FALSE(system.StartProcess(line.data(), false, 0, &started)) << program;
    EXPECT_EQ(nullptr, started.process);
  }
  StartedProcess started{};
  EXPECT_FALSE(system.StartProcess(nullptr, false, 0, &started));
}

TEST_F(SpawnTest, CreationFlagsAreRefused) {
  auto line = Widen(ProcessFixture("exit 0"));
  StartedProcess started{};
  EXPECT_FALSE(system.StartProcess(line.data(), false, 16, &started));
}

TEST_F(SpawnTest, NoDescriptorOfTheHostReachesTheChildUnlessItMay) {
  int pipe[2];
  ASSERT_EQ(0, ::pipe(pipe));  // without closing on execution
  const int high = fcntl(pipe[0], F_DUPFD, 500);
  const StartedProcess running = Start("run");  // its process descriptor stays with the host, too
  EXPECT_EQ(0u, Run("descriptors"));
  EXPECT_LE(3u, Run("descriptors", true));
  for (const int descriptor : {pipe[0], pipe[1], high}) close(descriptor);
  system.EndProcess(running.process, 0);
  Finish(running);
}

TEST_F(SpawnTest, TheChildBlocksAndIgnoresNoSignal) {
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  ASSERT_EQ(0, pthread_sigmask(SIG_BLOCK, &all, &before));
  const auto old = signal(SIGPIPE, SIG_IGN);
  EXPECT_EQ(0u, Run("signals"));
  signal(SIGPIPE, old);
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

TEST_F(SpawnTest, RunningOutOfMemoryDoesNotStart) {
  auto line = Widen(ProcessFixture("exit 3"));
  for (int n = 1;; ++n) {
    ASSERT_LT(n, 20);
    Allocations allocations;
    allocations.Fail(n);
    StartedProcess started{};
    const bool isStarted = system.StartProcess(line.data(), false, 0, &started);
    EXPECT_EQ(!allocations.HasFailed(), isStarted);
    const unsigned int code = isStarted ? Finish(started) : 3;
    EXPECT_EQ(3u, code);
    EXPECT_EQ(0u, allocations.Live());
    if (isStarted) break;
  }
}

TEST_F(SpawnTest, WithoutProcessDescriptorsNothingStartsAndNothingIsLeft) {
  InForkedProcess([this] {
    Refuse(SYS_pidfd_open, ENOSYS);
    const int descriptors = CountDescriptors();
    auto line = Widen(ProcessFixture("run"));
    StartedProcess started{};
    EXPECT_FALSE(system.StartProcess(line.data(), false, 0, &started));
    EXPECT_EQ(-1, waitpid(-1, nullptr, WNOHANG));
    EXPECT_EQ(ECHILD, errno);
    EXPECT_EQ(descriptors, CountDescriptors());
  });
}

// Another process may have its number by then.
TEST_F(SpawnTest, AChildThatWasReapedBeforeItIsCheckedIsNotKilledByItsNumber) {
  InForkedProcess([this] {
    signal(SIGCHLD, SIG_IGN);
    Refuse(SYS_pidfd_open, ESRCH, getpid());
    const StartedProcess started = Start("exit 0");
    while (IsChild(started.processId)) usleep(1000);
    EXPECT_EQ(0u, system.WaitFor(started.process, 60000));
    unsigned int code = 0;
    EXPECT_FALSE(system.ExitCodeOf(started.process, &code));
    EXPECT_FALSE(system.EndProcess(started.process, 1));
    system.ReleaseHandle(started.process);
  });
}

TEST_F(SpawnTest, ARunningChildIsReachedByItsDescriptorAndNotByItsNumber) {
  InForkedProcess([this] {
    const StartedProcess interrupted = Start("run");
    const StartedProcess ended = Start("run");
    Refuse(SYS_kill, EPERM);
    EXPECT_TRUE(system.SendConsoleEvent(ControlC, interrupted.processId));
    EXPECT_EQ(128u + SIGINT, Finish(interrupted));
    EXPECT_TRUE(system.EndProcess(ended.process, 7));
    EXPECT_EQ(7u, Finish(ended));
  });
}

}  // namespace
}  // namespace tests
