// What a host may do with forks, signals and its own children while children of the library live.
#include <linux/sched.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdint>
#include <thread>
#include <utility>

#include "platform/linux/ChildTest.h"
#include "platform/linux/ForkedProcess.h"

namespace tests {
namespace {

using namespace torvan::platform;

using ProcessesHostTest = ChildTest;

// --- Forks ---

TEST_F(ProcessesHostTest, ForksAWorkerThatLaunchesAndReapsItsOwn) {
  const unsigned int released = StartAndRelease();
  End(released);
  InForkedProcess([&] {
    EXPECT_EQ(3u, Run("exit 3"));
    const unsigned int own = StartAndRelease();
    End(own);
    system.ReleaseHandle(nullptr);
    EXPECT_FALSE(IsChild(own));
  });
  EXPECT_TRUE(IsChild(released));
  system.ReleaseHandle(nullptr);
  EXPECT_FALSE(IsChild(released));
}

TEST_F(ProcessesHostTest, ForksAWorkerThatDropsItsCopyOfAHandle) {
  const StartedProcess running = Start("run");
  const StartedProcess ended = Start("exit 5");
  AwaitEnd(ended.processId);
  InForkedProcess([&] {
    system.ReleaseHandle(running.process);
    system.ReleaseHandle(ended.process);
    system.ReleaseHandle(nullptr);
  });
  EXPECT_EQ(5u, Finish(ended));
  EXPECT_EQ(258u, system.WaitFor(running.process, 0));
  EXPECT_TRUE(system.EndProcess(running.process, 4));
  EXPECT_EQ(4u, Finish(running));
}

TEST_F(ProcessesHostTest, ForksAWorkerThatCannotAskForTheProgramsOfItsParent) {
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

TEST_F(ProcessesHostTest, KeepsItsHandlerOfSigchldAndTheExitCodesOfItsOwnChildren) {
  static volatile sig_atomic_t ends;
  ends = 0;
  struct sigaction action {};
  struct sigaction before {};
  action.sa_handler = [](int) { ends = ends + 1; };
  action.sa_flags = SA_RESTART;
  sigaction(SIGCHLD, &action, &before);
  const pid_t own = Fork([] { _exit(9); });
  AwaitEnd(static_cast<unsigned int>(own));
  const unsigned int released = StartAndRelease();
  EXPECT_EQ(6u, Run("exit 6"));
  End(released);
  system.ReleaseHandle(nullptr);
  EXPECT_FALSE(IsChild(released));

  int status = 0;
  EXPECT_EQ(own, waitpid(own, &status, WNOHANG));
  EXPECT_EQ(9, WEXITSTATUS(status));
  EXPECT_LE(1, ends);
  struct sigaction after {};
  sigaction(SIGCHLD, &before, &after);
  EXPECT_EQ(action.sa_handler, after.sa_handler);
}

TEST_F(ProcessesHostTest, IgnoresSigchldAndSoTakesTheExitCodesAway) {
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

TEST_F(ProcessesHostTest, ReapsEveryChildInALoopAndSoTakesTheExitCodesAway) {
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

TEST_F(ProcessesHostTest, IgnoresConsoleSignalsWhichItsChildrenHear) {
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

TEST_F(ProcessesHostTest, HasItsOwnChildUnderTheNumberOfOneThatItReaped) {
  const StartedProcess started = Start("exit 5");
  EXPECT_EQ(static_cast<pid_t>(started.processId), waitpid(static_cast<pid_t>(started.processId), nullptr, 0));
  usleep(50000);  // start times have a resolution of 10 milliseconds
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
}  // namespace tests
