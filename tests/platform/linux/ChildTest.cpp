// How a child begins, and what becomes of those that nobody holds.
#include "platform/linux/ChildTest.h"

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstddef>
#include <fstream>
#include <iterator>
#include <thread>

#include "fakes/Allocations.h"

namespace platform_tests {
namespace {

using namespace torvan::platform;

using ChildStartTest = ChildTest;
using OrphanTest = ChildTest;

TEST_F(ChildStartTest, TheArgumentsArriveAsTheyWereQuoted) {
  const TemporaryFolder folder;
  const std::string file = folder.Path("a file");
  EXPECT_EQ(0u, Run("write \"" + file + "\" \"-cp\" \"a b\" \"\" x\\\"y \xC3\xA4 "));
  std::ifstream written(file);
  EXPECT_EQ("-cp\na b\n\nx\"y\n\xC3\xA4\n", std::string(std::istreambuf_iterator<char>(written), {}));
}

TEST_F(ChildStartTest, AProgramWithoutAPathIsSearchedFor) {
  auto line = fakes::Widen("sh -c \"exit 5\"");
  StartedProcess started{};
  ASSERT_TRUE(system.StartProcess(line.data(), false, 0, &started));
  EXPECT_EQ(5u, Finish(started));
}

TEST_F(ChildStartTest, WhatCannotBeExecutedDoesNotStart) {
  const TemporaryFolder folder;
  for (const std::string& program : {folder.Path("missing"), folder.AddFile("text", "no program"), folder.Path(),
                                     folder.AddFile("file") + "/below", std::string()}) {
    auto line = fakes::Widen("\"" + program + "\"");
    StartedProcess started{};
    EXPECT_FALSE(system.StartProcess(line.data(), false, 0, &started)) << program;
    EXPECT_EQ(nullptr, started.process);
  }
  StartedProcess started{};
  EXPECT_FALSE(system.StartProcess(nullptr, false, 0, &started));
}

TEST_F(ChildStartTest, CreationFlagsAreRefused) {
  auto line = fakes::Widen(ProcessFixture("exit 0"));
  StartedProcess started{};
  EXPECT_FALSE(system.StartProcess(line.data(), false, 16, &started));
}

TEST_F(ChildStartTest, NoDescriptorOfTheHostReachesTheChildUnlessItMay) {
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

TEST_F(ChildStartTest, TheChildBlocksAndIgnoresNoSignal) {
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  ASSERT_EQ(0, pthread_sigmask(SIG_BLOCK, &all, &before));
  const auto old = signal(SIGPIPE, SIG_IGN);
  EXPECT_EQ(0u, Run("signals"));
  signal(SIGPIPE, old);
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

TEST_F(ChildStartTest, RunningOutOfMemoryDoesNotStart) {
  auto line = fakes::Widen(ProcessFixture("exit 3"));
  for (int n = 1;; ++n) {
    ASSERT_LT(n, 20);
    fakes::Allocations allocations;
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

// Runs in a process of its own, which may open process descriptors of itself only, or none.
int StartWithoutProcessDescriptors(bool ownIsOpened) {
  const auto low = static_cast<unsigned int>(offsetof(seccomp_data, args[0]));
  sock_filter filter[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<unsigned int>(offsetof(seccomp_data, nr))),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_pidfd_open, 0, 3),
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, low),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, ownIsOpened ? static_cast<unsigned int>(getpid()) : 0, 1, 0),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  const sock_fprog program{static_cast<unsigned short>(std::size(filter)), filter};
  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 || prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0)
    return 1;
  const int descriptors = CountDescriptors();
  auto line = fakes::Widen(ProcessFixture("run"));
  StartedProcess started{};
  if (System::Native().StartProcess(line.data(), false, 0, &started)) return 2;
  if (waitpid(-1, nullptr, WNOHANG) != -1 || errno != ECHILD) return 3;
  return CountDescriptors() == descriptors ? 0 : 4;
}

TEST_F(ChildStartTest, WithoutProcessDescriptorsNothingStartsAndNothingIsLeft) {
  for (const bool ownIsOpened : {false, true}) {
    const pid_t child = fork();
    if (child == 0) _exit(StartWithoutProcessDescriptors(ownIsOpened));
    int status = 0;
    ASSERT_EQ(child, waitpid(child, &status, 0));
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(0, WEXITSTATUS(status)) << ownIsOpened;
  }
}

TEST_F(OrphanTest, AChildReleasedWhileItRunsGoesOnAndIsReapedByTheNextCallAfterItsEnd) {
  const StartedProcess started = Start("run");
  system.ReleaseHandle(started.process);
  EXPECT_TRUE(IsChild(started.processId));
  EXPECT_TRUE(system.SendConsoleEvent(ControlC, started.processId)) << "it still runs";
  AwaitEnd(started.processId);
  EXPECT_TRUE(IsChild(started.processId));
  EXPECT_FALSE(system.SendConsoleEvent(ControlC, 0));
  EXPECT_FALSE(IsChild(started.processId));
}

TEST_F(OrphanTest, AnyCallAboutProcessesReapsThem) {
  const StartedProcess held = Start("run");
  const auto orphan = [&] {
    const StartedProcess started = Start("exit 0");
    system.ReleaseHandle(started.process);
    if (IsChild(started.processId)) AwaitEnd(started.processId);
    return started.processId;
  };

  unsigned int id = orphan();
  EXPECT_EQ(258u, system.WaitFor(held.process, 0));
  EXPECT_FALSE(IsChild(id));

  id = orphan();
  unsigned int code = 0;
  EXPECT_TRUE(system.ExitCodeOf(held.process, &code));
  EXPECT_FALSE(IsChild(id));

  id = orphan();
  EXPECT_EQ(0u, Run("exit 0"));
  EXPECT_FALSE(IsChild(id));

  id = orphan();
  EXPECT_TRUE(system.EndProcess(held.process, 0));
  EXPECT_FALSE(IsChild(id));

  id = orphan();
  system.ReleaseHandle(held.process);
  EXPECT_FALSE(IsChild(id));
  if (IsChild(held.processId)) AwaitEnd(held.processId);
  system.ReleaseHandle(nullptr);
}

TEST_F(OrphanTest, AnEndedChildIsReapedByTheReleaseOfItsHandle) {
  const StartedProcess started = Start("exit 0");
  AwaitEnd(started.processId);
  system.ReleaseHandle(started.process);
  EXPECT_FALSE(IsChild(started.processId));
}

TEST_F(OrphanTest, AnEndedChildAnswersUntilItsHandleIsReleased) {
  const StartedProcess started = Start("exit 6");
  EXPECT_EQ(0u, system.WaitFor(started.process, 0xFFFFFFFF));
  for (int asked = 0; asked < 2; ++asked) {
    unsigned int code = 0;
    EXPECT_TRUE(system.ExitCodeOf(started.process, &code));
    EXPECT_EQ(6u, code);
  }
  EXPECT_TRUE(IsChild(started.processId)) << "no other process can have its id";
  system.ReleaseHandle(started.process);
  EXPECT_FALSE(IsChild(started.processId));
}

TEST_F(OrphanTest, ThreadsStartAndReleaseChildrenTogether) {
  const auto work = [this] {
    for (int i = 0; i < 20; ++i) {
      const StartedProcess dropped = Start("exit 0");
      system.ReleaseHandle(dropped.process);
      EXPECT_EQ(static_cast<unsigned int>(i), Run("exit " + std::to_string(i)));
    }
  };
  std::thread other(work);
  work();
  other.join();
  for (siginfo_t information{}; waitid(P_ALL, 0, &information, WEXITED | WNOWAIT) == 0;) system.ReleaseHandle(nullptr);
}

}  // namespace
}  // namespace platform_tests
