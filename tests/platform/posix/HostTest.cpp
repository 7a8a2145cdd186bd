// What hosts do with their own descriptors, signals, children and forks while children of the library live.
#include <fcntl.h>
#include <linux/sched.h>
#include <sched.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdint>
#include <thread>
#include <utility>
#include <vector>

#include "platform/posix/ChildTest.h"
#include "platform/posix/ForkedProcess.h"

namespace platform_tests {
namespace {

using namespace torvan::platform;

using HostTest = ChildTest;

void CloseAllAsDaemonsDo() { ASSERT_EQ(0, close_range(STDERR_FILENO + 1, ~0u, 0)); }

// --- Descriptors ---

TEST_F(HostTest, MayCloseEveryDescriptorAndLaunch) {
  InForkedProcess([this] {
    const StartedProcess held = Start("after 300 7");
    const StartedProcess released = Start("after 100 0");
    system.ReleaseHandle(released.process);
    CloseAllAsDaemonsDo();
    std::vector<int> files;  // they get the numbers that were closed
    while (files.size() < 20) files.push_back(open("/dev/null", O_RDONLY | O_CLOEXEC));

    EXPECT_EQ(258u, system.WaitFor(held.process, 0));
    EXPECT_EQ(0u, system.WaitFor(held.process, 60000));
    EXPECT_EQ(7u, Finish(held));
    EXPECT_FALSE(IsChild(released.processId));
    EXPECT_EQ(5u, Run("exit 5"));
    for (const int file : files) EXPECT_EQ(FD_CLOEXEC, fcntl(file, F_GETFD)) << file;
  });
}

struct Registration {
  const char* name;
  bool byPointer;
  std::uint32_t flags;
};

class HostEpollTest : public HostTest, public testing::WithParamInterface<Registration> {};

// Whatever descriptor the library might remember, it is one of the host's sets now.
TEST_P(HostEpollTest, IsNeitherReadNorClosed) {
  struct Set {
    int epoll;
    int event;
    epoll_event wanted;
  };
  InForkedProcess([this] {
    CloseAllAsDaemonsDo();
    std::vector<Set> sets(10);
    for (Set& set : sets) {
      set = {epoll_create1(EPOLL_CLOEXEC), eventfd(1, EFD_CLOEXEC), {}};
      set.wanted.events = EPOLLIN | GetParam().flags;
      if (GetParam().byPointer) {
        set.wanted.data.ptr = &set;
      } else {
        set.wanted.data.fd = set.event;
      }
      ASSERT_EQ(0, epoll_ctl(set.epoll, EPOLL_CTL_ADD, set.event, &set.wanted));
    }

    const StartedProcess released = Start("after 50 0");
    system.ReleaseHandle(released.process);
    AwaitEnd(released.processId);
    EXPECT_EQ(3u, Run("exit 3"));
    EXPECT_FALSE(IsChild(released.processId));

    for (const Set& set : sets) {
      epoll_event seen{};
      EXPECT_EQ(1, epoll_wait(set.epoll, &seen, 1, 0)) << set.epoll;
      EXPECT_EQ(set.wanted.data.u64, seen.data.u64);
      eventfd_t value = 0;
      EXPECT_EQ(0, eventfd_read(set.event, &value)) << set.event;
      EXPECT_EQ(1u, value);
    }
  });
}

INSTANTIATE_TEST_SUITE_P(
    Sets, HostEpollTest,
    testing::Values(Registration{"ByDescriptor", false, 0}, Registration{"ByDescriptorEdge", false, EPOLLET},
                    Registration{"ByDescriptorOneShot", false, EPOLLONESHOT}, Registration{"ByPointer", true, 0},
                    Registration{"ByPointerEdge", true, EPOLLET}, Registration{"ByPointerOneShot", true, EPOLLONESHOT}),
    [](const auto& registration) { return std::string(registration.param.name); });

TEST_F(HostTest, WithoutStandardDescriptorsGivesTheChildEmptyOnes) {
  InForkedProcess([this] {
    ASSERT_EQ(0, close_range(STDIN_FILENO, STDERR_FILENO, 0));
    const unsigned int open = Run("standard");
    const bool areTaken =
        fcntl(STDIN_FILENO, F_GETFD) >= 0 || fcntl(STDOUT_FILENO, F_GETFD) >= 0 || fcntl(STDERR_FILENO, F_GETFD) >= 0;
    _exit(open == 3 && !areTaken ? 0 : 1);  // there is nothing to print to
  });
}

TEST_F(HostTest, HoldsNoDescriptorForItsChildren) {
  const int before = CountDescriptors();
  const StartedProcess held = Start("exit 0");
  const StartedProcess released = Start("after 100 0");
  system.ReleaseHandle(released.process);
  EXPECT_EQ(before, CountDescriptors());
  AwaitEnd(released.processId);
  EXPECT_EQ(0u, Finish(held));
}

TEST_F(HostTest, CanOpenNoMoreDescriptorsAndStillWaitsForItsChildrenAndEndsThem) {
  InForkedProcess([this] {
    const StartedProcess running = Start("run");
    const StartedProcess ending = Start("after 100 3");
    const int next = open("/dev/null", O_RDONLY);
    close(next);
    const rlimit none{static_cast<rlim_t>(next), static_cast<rlim_t>(next)};
    ASSERT_EQ(0, setrlimit(RLIMIT_NOFILE, &none));

    auto line = fakes::Widen(ProcessFixture("run"));
    StartedProcess started{};
    EXPECT_FALSE(system.StartProcess(line.data(), false, 0, &started));
    EXPECT_EQ(258u, system.WaitFor(running.process, 0));
    EXPECT_EQ(0xFFFFFFFF, system.WaitFor(running.process, 10)) << "there is nothing to wait with";
    EXPECT_EQ(3u, Finish(ending));
    EXPECT_TRUE(system.EndProcess(running.process, 5));
    EXPECT_EQ(5u, Finish(running));
  });
}

bool HideProc() {
  return unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         mount("none", "/proc", "tmpfs", 0, nullptr) == 0;
}

TEST_F(HostTest, SeesNoProcAndLaunches) {
  constexpr int MayNotHideIt = 77;
  const std::string programs[] = {ProcessFixture("after 50 0"), ProcessFixture("after 50 4")};
  const pid_t host = Fork([&] {
    if (!HideProc()) _exit(MayNotHideIt);
    StartedProcess started[2] = {};
    for (int i = 0; i < 2; ++i) {
      auto line = fakes::Widen(programs[i]);
      EXPECT_TRUE(system.StartProcess(line.data(), false, 0, &started[i]));
    }
    system.ReleaseHandle(started[0].process);
    AwaitEnd(started[0].processId);
    EXPECT_EQ(4u, Finish(started[1]));
    EXPECT_FALSE(IsChild(started[0].processId));
  });
  int status = 0;
  ASSERT_EQ(host, waitpid(host, &status, 0));
  if (WIFEXITED(status) && WEXITSTATUS(status) == MayNotHideIt) GTEST_SKIP() << "this process may not hide /proc";
  EXPECT_EQ(0, status);
}

// --- Forks ---

TEST_F(HostTest, ForksAWorkerThatLaunchesAndReapsItsOwnAllTheSame) {
  const StartedProcess released = Start("after 100 0");
  system.ReleaseHandle(released.process);
  InForkedProcess([&] {
    while (!IsZombie(released.processId)) usleep(10000);
    EXPECT_EQ(3u, Run("exit 3"));
    const StartedProcess own = Start("after 50 0");
    system.ReleaseHandle(own.process);
    AwaitEnd(own.processId);
    system.ReleaseHandle(nullptr);
    EXPECT_FALSE(IsChild(own.processId));
  });
  EXPECT_TRUE(IsChild(released.processId));
  system.ReleaseHandle(nullptr);
  EXPECT_FALSE(IsChild(released.processId));
}

TEST_F(HostTest, ForksAWorkerThatDropsItsCopyOfAHandle) {
  const StartedProcess running = Start("after 300 4");
  const StartedProcess ended = Start("exit 5");
  AwaitEnd(ended.processId);
  InForkedProcess([&] {
    system.ReleaseHandle(running.process);
    system.ReleaseHandle(ended.process);
    system.ReleaseHandle(nullptr);
  });
  EXPECT_EQ(5u, Finish(ended));
  EXPECT_EQ(258u, system.WaitFor(running.process, 0));
  EXPECT_EQ(4u, Finish(running));
}

TEST_F(HostTest, ForksAWorkerThatCannotAskForTheProgramsOfItsParent) {
  const StartedProcess started = Start("run");
  InForkedProcess([&] {
    unsigned int code = 0;
    EXPECT_EQ(0xFFFFFFFF, system.WaitFor(started.process, 0));
    EXPECT_EQ(0xFFFFFFFF, system.WaitFor(started.process, 0xFFFFFFFF));
    EXPECT_FALSE(system.ExitCodeOf(started.process, &code));
    EXPECT_FALSE(system.EndProcess(started.process, 1));
    EXPECT_FALSE(system.SendConsoleEvent(0, started.processId));
  });
  EXPECT_EQ(258u, system.WaitFor(started.process, 50)) << "it still runs";
  EXPECT_TRUE(system.EndProcess(started.process, 0));
  EXPECT_EQ(0u, Finish(started));
}

// --- Signals and the host's own children ---

TEST_F(HostTest, KeepsItsHandlerOfSigchldAndTheExitCodesOfItsOwnChildren) {
  static volatile sig_atomic_t ends;
  ends = 0;
  struct sigaction action {};
  struct sigaction before {};
  action.sa_handler = [](int) { ends = ends + 1; };
  action.sa_flags = SA_RESTART;
  sigaction(SIGCHLD, &action, &before);
  const pid_t own = Fork([] { _exit(9); });
  AwaitEnd(static_cast<unsigned int>(own));
  const StartedProcess released = Start("after 50 0");
  system.ReleaseHandle(released.process);
  EXPECT_EQ(6u, Run("exit 6"));
  AwaitEnd(released.processId);
  system.ReleaseHandle(nullptr);
  EXPECT_FALSE(IsChild(released.processId));

  int status = 0;
  EXPECT_EQ(own, waitpid(own, &status, WNOHANG));
  EXPECT_EQ(9, WEXITSTATUS(status));
  EXPECT_LE(1, ends);
  struct sigaction after {};
  sigaction(SIGCHLD, &before, &after);
  EXPECT_EQ(action.sa_handler, after.sa_handler);
}

TEST_F(HostTest, IgnoresSigchldAndSoTakesTheExitCodesAway) {
  InForkedProcess([this] {
    signal(SIGCHLD, SIG_IGN);
    for (const char* program : {"exit 7", "after 100 7"}) {
      const StartedProcess started = Start(program);
      EXPECT_EQ(0u, system.WaitFor(started.process, 60000)) << program;
      EXPECT_EQ(0u, system.WaitFor(started.process, 0));
      unsigned int code = 77;
      EXPECT_FALSE(system.ExitCodeOf(started.process, &code));
      EXPECT_EQ(77u, code);
      system.ReleaseHandle(started.process);
    }
    system.ReleaseHandle(Start("after 50 0").process);
  });
}

TEST_F(HostTest, ReapsEveryChildInALoopAndSoTakesTheExitCodesAway) {
  InForkedProcess([this] {
    std::atomic<bool> goesOn = true;
    std::thread loop([&] {
      while (goesOn) {
        if (waitpid(-1, nullptr, WNOHANG) <= 0) usleep(1000);
      }
    });
    for (int i = 0; i < 50; ++i) {
      const StartedProcess started = Start(i % 2 == 0 ? "exit 7" : "after 5 7");
      EXPECT_EQ(0u, system.WaitFor(started.process, 60000));
      unsigned int code = 77;
      if (system.ExitCodeOf(started.process, &code)) {
        EXPECT_EQ(7u, code) << "the loop has not come to it";
      }
      system.ReleaseHandle(started.process);
    }
    const StartedProcess running = Start("run");
    EXPECT_TRUE(system.EndProcess(running.process, 0));
    EXPECT_EQ(0u, system.WaitFor(running.process, 0xFFFFFFFF));
    system.ReleaseHandle(running.process);
    goesOn = false;
    loop.join();
  });
}

TEST_F(HostTest, IgnoresConsoleSignalsWhichItsChildrenHear) {
  const auto interrupt = signal(SIGINT, SIG_IGN);
  const auto quit = signal(SIGQUIT, SIG_IGN);
  EXPECT_EQ(0u, Run("signals"));
  for (const auto& [event, signal] : {std::pair(0u, SIGINT), std::pair(1u, SIGQUIT)}) {
    const StartedProcess started = Start("run");
    EXPECT_TRUE(system.SendConsoleEvent(event, started.processId));
    EXPECT_EQ(128u + static_cast<unsigned int>(signal), Finish(started));
  }
  signal(SIGINT, interrupt);
  signal(SIGQUIT, quit);
}

// Starts a process with a number of our choice, which only a privileged process may; -1 otherwise.
pid_t ForkAs(unsigned int id) {
  pid_t wanted = static_cast<pid_t>(id);
  clone_args arguments{};
  arguments.exit_signal = SIGCHLD;
  arguments.set_tid = reinterpret_cast<std::uintptr_t>(&wanted);
  arguments.set_tid_size = 1;
  return static_cast<pid_t>(syscall(SYS_clone3, &arguments, sizeof(arguments)));
}

TEST_F(HostTest, HasAChildOfItsOwnUnderTheNumberOfOneThatItReaped) {
  const StartedProcess started = Start("exit 5");
  EXPECT_EQ(static_cast<pid_t>(started.processId), waitpid(static_cast<pid_t>(started.processId), nullptr, 0));
  usleep(50000);  // start times are told in steps of 10 milliseconds
  const pid_t own = ForkAs(started.processId);
  if (own == 0) {
    pause();
    _exit(0);
  }
  if (own > 0) {
    EXPECT_EQ(static_cast<pid_t>(started.processId), own);
    unsigned int code = 0;
    EXPECT_EQ(0u, system.WaitFor(started.process, 100)) << "the one that was started has ended";
    EXPECT_FALSE(system.ExitCodeOf(started.process, &code));
    EXPECT_FALSE(system.EndProcess(started.process, 1));
  }
  system.ReleaseHandle(started.process);
  if (own < 0) GTEST_SKIP() << "this process may not choose the number of a child";
  EXPECT_EQ(0, waitpid(own, nullptr, WNOHANG)) << "it runs";
  EXPECT_EQ(0, kill(own, SIGTERM));
  AwaitEnd(static_cast<unsigned int>(own));
  system.ReleaseHandle(nullptr);
  int status = 0;
  EXPECT_EQ(own, waitpid(own, &status, 0));
  EXPECT_EQ(SIGTERM, WTERMSIG(status));
}

}  // namespace
}  // namespace platform_tests
