// Waiting for a child, ending it and asking how it ended.
#include <sys/time.h>
#include <unistd.h>

#include <chrono>

#include "platform/linux/ChildTest.h"

namespace tests {
namespace {

using namespace torvan::platform;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

using ProcessesTest = ChildTest;

TEST_F(ProcessesTest, AWaitLastsAsLongAsItsTimeOut) {
  const StartedProcess started = Start("run");
  const auto begin = steady_clock::now();
  EXPECT_EQ(258u, system.WaitFor(started.process, 120));
  EXPECT_LE(milliseconds(120), steady_clock::now() - begin);
  EXPECT_TRUE(system.EndProcess(started.process, 0));
  EXPECT_EQ(0u, Finish(started));
}

TEST_F(ProcessesTest, SignalsDoNotShortenAWait) {
  struct sigaction action {};
  struct sigaction before {};
  action.sa_handler = [](int) {};
  sigaction(SIGALRM, &action, &before);
  const itimerval every5Milliseconds{{0, 5000}, {0, 5000}};
  const itimerval never{};
  const StartedProcess started = Start("run");

  setitimer(ITIMER_REAL, &every5Milliseconds, nullptr);
  const auto begin = steady_clock::now();
  EXPECT_EQ(258u, system.WaitFor(started.process, 100));
  EXPECT_LE(milliseconds(100), steady_clock::now() - begin);
  EXPECT_TRUE(system.EndProcess(started.process, 0));
  EXPECT_EQ(0u, system.WaitFor(started.process, 0xFFFFFFFF));
  setitimer(ITIMER_REAL, &never, nullptr);

  sigaction(SIGALRM, &before, nullptr);
  system.ReleaseHandle(started.process);
}

// 4295 milliseconds are more nanoseconds, and 0xFFFFFFFE more microseconds, than 32 bits hold.
TEST_F(ProcessesTest, LongTimeOutsDoNotOverflow) {
  for (const unsigned int timeOut : {4295u, 0xFFFFFFFEu}) {
    const StartedProcess started = Start("after 100 4");
    EXPECT_EQ(0u, system.WaitFor(started.process, timeOut));
    EXPECT_EQ(4u, Finish(started));
  }
}

TEST_F(ProcessesTest, AChildEndedByASignalHas128AndItsNumberAsExitCode) {
  EXPECT_EQ(128u + SIGTERM, Run("raise " + std::to_string(SIGTERM)));
  EXPECT_EQ(128u + SIGABRT, Run("raise " + std::to_string(SIGABRT)));
  EXPECT_EQ(128u + SIGKILL, Run("raise " + std::to_string(SIGKILL)));
}

TEST_F(ProcessesTest, TheCodeOfEndProcessIsNotCutToAByte) {
  const StartedProcess started = Start("run");
  EXPECT_TRUE(system.EndProcess(started.process, 0xC000013A));
  EXPECT_EQ(0xC000013A, Finish(started));
}

TEST_F(ProcessesTest, AChildThatEndedByItselfKeepsItsExitCode) {
  const StartedProcess started = Start("exit 5");
  AwaitEnd(started.processId);
  EXPECT_FALSE(system.EndProcess(started.process, 9));
  EXPECT_EQ(5u, Finish(started));
}

TEST_F(ProcessesTest, ConsoleEventsAreSignals) {
  StartedProcess started = Start("run");
  EXPECT_TRUE(system.SendConsoleEvent(0, started.processId));
  EXPECT_EQ(128u + SIGINT, Finish(started));

  started = Start("run");
  EXPECT_TRUE(system.SendConsoleEvent(1, started.processId));
  EXPECT_EQ(128u + SIGQUIT, Finish(started));
}

TEST_F(ProcessesTest, ConsoleEventsReachOnlyRunningChildren) {
  const StartedProcess started = Start("run");
  EXPECT_FALSE(system.SendConsoleEvent(2, started.processId)) << "no such event";
  EXPECT_TRUE(system.EndProcess(started.process, 0));
  AwaitEnd(started.processId);
  EXPECT_FALSE(system.SendConsoleEvent(0, started.processId)) << "it has ended";
  EXPECT_EQ(0u, Finish(started));
  EXPECT_FALSE(system.SendConsoleEvent(0, started.processId)) << "it has been reaped";
}

TEST_F(ProcessesTest, ConsoleEventsReachNoProcessThatIsNotAChild) {
  static volatile sig_atomic_t received;
  received = 0;
  const auto before = signal(SIGINT, [](int) { received = 1; });
  for (const pid_t id : {getpid(), pid_t{0}, pid_t{-1}}) {
    EXPECT_FALSE(system.SendConsoleEvent(0, static_cast<unsigned int>(id))) << id;
  }
  EXPECT_EQ(0, received);
  signal(SIGINT, before);
}

TEST_F(ProcessesTest, AChildThatTheHostReapsHasEndedWithoutAnExitCode) {
  const StartedProcess started = Start("exit 5");
  EXPECT_EQ(static_cast<pid_t>(started.processId), waitpid(static_cast<pid_t>(started.processId), nullptr, 0));
  EXPECT_EQ(0u, system.WaitFor(started.process, 0xFFFFFFFF));
  unsigned int code = 0;
  EXPECT_FALSE(system.ExitCodeOf(started.process, &code));
  EXPECT_FALSE(system.EndProcess(started.process, 1));
  EXPECT_FALSE(system.SendConsoleEvent(0, started.processId));
  system.ReleaseHandle(started.process);
}

TEST_F(ProcessesTest, ANullHandleIsAnsweredWithFailure) {
  unsigned int code = 0;
  EXPECT_EQ(0xFFFFFFFF, system.WaitFor(nullptr, 0));
  EXPECT_FALSE(system.ExitCodeOf(nullptr, &code));
  EXPECT_FALSE(system.EndProcess(nullptr, 0));
  system.ReleaseHandle(nullptr);
}

}  // namespace
}  // namespace tests
