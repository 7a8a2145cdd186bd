// How a child begins, and what becomes of those that nobody holds.
#include "platform/posix/ChildTest.h"

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstddef>
#include <fstream>
#include <future>
#include <iterator>
#include <thread>

#include "fakes/Allocations.h"
#include "platform/posix/ForkedProcess.h"

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

// Refuses a system call with an error from now on, save for `allowed` as its first argument; whoever kills by number
// is ended. Lasts as long as this process.
void Refuse(unsigned int call, int error, pid_t allowed = -1) {
  const auto argument = static_cast<unsigned int>(offsetof(seccomp_data, args[0]));
  sock_filter filter[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<unsigned int>(offsetof(seccomp_data, nr))),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_kill, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, call, 0, 3),
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, argument),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned int>(allowed), 1, 0),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<unsigned int>(error)),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  const sock_fprog program{static_cast<unsigned short>(std::size(filter)), filter};
  ASSERT_EQ(0, prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0));
  ASSERT_EQ(0, prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program));
}

TEST_F(ChildStartTest, WithoutProcessDescriptorsNothingStartsAndNothingIsLeft) {
  InForkedProcess([this] {
    Refuse(SYS_pidfd_open, ENOSYS);
    const int descriptors = CountDescriptors();
    auto line = fakes::Widen(ProcessFixture("run"));
    StartedProcess started{};
    EXPECT_FALSE(system.StartProcess(line.data(), false, 0, &started));
    EXPECT_EQ(-1, waitpid(-1, nullptr, WNOHANG));
    EXPECT_EQ(ECHILD, errno);
    EXPECT_EQ(descriptors, CountDescriptors());
  });
}

// Another process may have its number by then.
TEST_F(ChildStartTest, AChildThatWasReapedBeforeItIsLookedAtIsNotKilledByItsNumber) {
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

TEST_F(ChildStartTest, ARunningChildIsReachedByItsDescriptorAndNotByItsNumber) {
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

TEST_F(OrphanTest, AChildWhoseThreadHasEndedIsReapedByACallOfAnother) {
  StartedProcess started{};
  std::thread([&] {
    started = Start("after 50 0");
    system.ReleaseHandle(started.process);
  }).join();
  AwaitEnd(started.processId);
  system.ReleaseHandle(nullptr);
  EXPECT_FALSE(IsChild(started.processId));
}

TEST_F(OrphanTest, ChildrenThatTheHostOrAHandleKeepsHideNoneAndStay) {
  const pid_t own = Fork([] { _exit(9); });
  const StartedProcess held = Start("exit 8");
  AwaitEnd(static_cast<unsigned int>(own));
  AwaitEnd(held.processId);
  std::promise<unsigned int> released;
  std::promise<void> isReaped;
  std::thread living([&] {
    const StartedProcess started = Start("after 50 0");
    system.ReleaseHandle(started.process);
    released.set_value(started.processId);
    isReaped.get_future().wait();
  });
  const unsigned int id = released.get_future().get();
  AwaitEnd(id);
  system.ReleaseHandle(nullptr);
  EXPECT_FALSE(IsChild(id));
  isReaped.set_value();
  living.join();

  EXPECT_EQ(8u, Finish(held));
  int status = 0;
  EXPECT_EQ(own, waitpid(own, &status, WNOHANG));
  EXPECT_EQ(9, WEXITSTATUS(status));
}

// A host that is a child of another one: its own children inherit the mark that it has there.
TEST_F(OrphanTest, TheChildrenOfAReleasedChildAreNotReleased) {
  InForkedProcess([this] {
    rlimit limit{};
    ASSERT_EQ(0, getrlimit(RLIMIT_LOCKS, &limit));
    --limit.rlim_cur;
    ASSERT_EQ(0, setrlimit(RLIMIT_LOCKS, &limit));
    const StartedProcess held = Start("exit 8");
    AwaitEnd(held.processId);
    system.ReleaseHandle(nullptr);
    EXPECT_EQ(8u, Finish(held));
    const StartedProcess released = Start("after 50 0");
    system.ReleaseHandle(released.process);
    AwaitEnd(released.processId);
    system.ReleaseHandle(nullptr);
    EXPECT_FALSE(IsChild(released.processId));
  });
}

TEST_F(OrphanTest, AnEndedChildIsReapedByTheReleaseOfItsHandleWhereChildrenCannotBeMarked) {
  InForkedProcess([this] {
    const StartedProcess started = Start("exit 0");
    AwaitEnd(started.processId);
    Refuse(SYS_prlimit64, EPERM);
    system.ReleaseHandle(started.process);
    EXPECT_FALSE(IsChild(started.processId));
  });
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
