// What belongs to the host stays as it is: its children, signals, forks, descriptors.
#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <sys/epoll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <fstream>
#include <thread>

#include "java/processes/Probe.h"
#include "java/processes/ThisProcess.h"

namespace tests {
namespace {

using java::Outcome;
using java::Process;

// Sets a signal's handler, and restores the one before.
class OnSignal {
 public:
  OnSignal(int signal, void (*handler)(int), int flags = SA_RESTART) : m_signal(signal) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    sigaction(signal, &action, &m_before);
  }
  ~OnSignal() { sigaction(m_signal, &m_before, nullptr); }

 private:
  int m_signal;
  struct sigaction m_before {};
};

std::atomic<int> g_signals = 0;
void Count(int) { ++g_signals; }

// Runs the function in a fork; it must return true. The fork ends by itself and not by _exit(): there a thread
// sanitizer reports that threads of this process, which the fork does not have, were never joined.
template <class Function>
void ExpectInFork(const Function& function) {
  const pid_t id = fork();
  if (id == 0) syscall(SYS_exit_group, function() ? 0 : 1);
  int status = -1;
  ASSERT_EQ(waitpid(id, &status, 0), id);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

// A runtime whose java is a script.
std::filesystem::path HomeOfScript(const std::string& name, const std::string& script) {
  return HomeWith(name, "#!/bin/sh\n" + script);
}

TEST(ProcessHostTest, ItsOwnChildrenAreLeftToIt) {
  const OnSignal handler(SIGCHLD, Count);
  g_signals = 0;
  int pipe[2];
  ASSERT_EQ(pipe2(pipe, O_CLOEXEC), 0);
  const pid_t own = fork();
  if (own == 0) {
    close(pipe[1]);
    char end;
    _exit(read(pipe[0], &end, 1) == 0 ? 17 : 1);
  }
  // It ends while the program runs.
  const auto endOwn = [&]() -> std::optional<std::string> {
    close(pipe[1]);
    siginfo_t end{};
    EXPECT_EQ(waitid(P_PID, static_cast<id_t>(own), &end, WEXITED | WNOWAIT), 0);
    EXPECT_TRUE(Eventually([] { return g_signals == 1; }));
    return std::nullopt;
  };
  EXPECT_EQ(java::Run(Probe({"echo", "exit", "3"}).InputFrom(endOwn)).exitCode, 3);
  close(pipe[0]);
  struct sigaction now {};
  sigaction(SIGCHLD, nullptr, &now);
  EXPECT_EQ(now.sa_handler, Count);
  EXPECT_TRUE(Eventually([] { return g_signals == 2; }));  // one for each
  int status = 0;
  EXPECT_EQ(waitpid(-1, &status, 0), own);
  EXPECT_EQ(WEXITSTATUS(status), 17);
  EXPECT_EQ(waitpid(-1, &status, 0), -1);
  EXPECT_EQ(errno, ECHILD);
}

pid_t g_own = 0;

TEST(ProcessHostTest, AHandlerThatReapsItsOwnChildDoesNotTakeOurs) {
  const OnSignal handler(SIGCHLD, [](int) {
    const int error = errno;
    if (g_own > 0) waitpid(g_own, nullptr, WNOHANG);
    errno = error;
  });
  g_own = fork();
  if (g_own == 0) _exit(0);
  for (int i = 0; i < 20; ++i) EXPECT_EQ(java::Run(Probe({"exit", "9"})).exitCode, 9);
  EXPECT_TRUE(Eventually([] {
    siginfo_t end{};
    return waitid(P_PID, static_cast<id_t>(g_own), &end, WEXITED | WNOHANG | WNOWAIT) == -1;
  }));
}

TEST(ProcessHostTest, AStartThatFailsAndADetachedProgramRaiseNoSignal) {
  const OnSignal handler(SIGCHLD, Count);
  g_signals = 0;
  EXPECT_THROW(java::Run(Probe({}).Folder(ProbeHome() / "nowhere")), java::StartFailure);
  const std::uint32_t id = Probe({"sleep", "100"}).Detached();
  EXPECT_TRUE(Eventually([id] { return !Runs(id); }));
  EXPECT_EQ(g_signals, 0);
}

TEST(ProcessHostTest, AHostThatIgnoresItsChildrenIsToldThatTheExitCodeIsLost) {
  for (const int flags : {0, SA_NOCLDWAIT}) {
    const OnSignal handler(SIGCHLD, flags == 0 ? SIG_IGN : SIG_DFL, flags);
    const Process process = java::Start(Probe({"exit", "3"}));
    const auto text = "The exit code of process " + std::to_string(process.Id()) +
                      " is lost: this process ignores SIGCHLD, so the system keeps no exit codes for it";
    ExpectThrow<java::Failure>([&] { process.Wait(); }, text);
    EXPECT_THROW(java::Run(Probe({"exit", "3"})), java::Failure);
    Process runs = java::Start(Probe({"sleep", Forever}));  // dropped
  }
}

std::atomic<int> g_taken = 0;

TEST(ProcessHostTest, AHostThatWaitsForEveryChildIsToldThatTheExitCodeIsLost) {
  const OnSignal handler(SIGCHLD, [](int) {
    const int error = errno;
    while (waitpid(-1, nullptr, WNOHANG) > 0) ++g_taken;
    errno = error;
  });
  g_taken = 0;
  // Nothing would be lost if the program's own thread were first: a function keeps it busy.
  const Process process = java::Start(Probe({"says", "x\n", "exit", "3"}).OnOutputLine([](std::string_view) {
    EXPECT_TRUE(Eventually([] { return g_taken > 0; }));
  }));
  ExpectThrow<java::Failure>([&] { process.Wait(); },
                             "The exit code of process " + std::to_string(process.Id()) +
                                 " is lost: other code of this process waits for every child, and has taken it");
}

TEST(ProcessHostTest, ItsEpollSetSeesNothing) {
  const int set = epoll_create1(EPOLL_CLOEXEC);
  int pipe[2];
  ASSERT_EQ(pipe2(pipe, O_CLOEXEC), 0);
  epoll_event event{};
  event.events = EPOLLIN;
  ASSERT_EQ(epoll_ctl(set, EPOLL_CTL_ADD, pipe[0], &event), 0);
  for (int i = 0; i < 20; ++i) java::Run(Probe({"echo"}).Input("x"));
  EXPECT_EQ(epoll_wait(set, &event, 1, 0), 0);
  ASSERT_EQ(write(pipe[1], "x", 1), 1);
  EXPECT_EQ(epoll_wait(set, &event, 1, 1000), 1);
  for (const int descriptor : {set, pipe[0], pipe[1]}) close(descriptor);
}

// What is registered lasts until every copy of its descriptor is closed, those in programs included.
TEST(ProcessHostTest, WhatItClosesLeavesItsEpollSetWhileAProgramRuns) {
  const int set = epoll_create1(EPOLL_CLOEXEC);
  int pipe[2];
  ASSERT_EQ(::pipe(pipe), 0);  // not closed on execution
  epoll_event event{};
  event.events = EPOLLIN;
  ASSERT_EQ(epoll_ctl(set, EPOLL_CTL_ADD, pipe[0], &event), 0);
  const Process process = java::Start(Probe({"sleep", Forever}));
  ASSERT_EQ(write(pipe[1], "x", 1), 1);
  EXPECT_EQ(epoll_wait(set, &event, 1, 1000), 1);
  close(pipe[0]);
  EXPECT_EQ(epoll_wait(set, &event, 1, 0), 0);
  for (const int descriptor : {set, pipe[1]}) close(descriptor);
}

TEST(ProcessHostTest, HandlersOfFaultsRunOnAProgramsThread) {
  sigset_t set;
  sigemptyset(&set);
  java::Start(Probe({"says", "x\n"}).OnOutputLine([&set](std::string_view) {
    pthread_sigmask(SIG_SETMASK, nullptr, &set);
  })).Wait();
  for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGSYS}) EXPECT_EQ(sigismember(&set, fault), 0);
  for (const int other : {SIGTERM, SIGCHLD, SIGPIPE, SIGUSR1}) EXPECT_EQ(sigismember(&set, other), 1);
}

int g_forks = 0;

TEST(ProcessHostTest, ItsHandlersOfForksDoNotRun) {
  ASSERT_EQ(pthread_atfork([] { ++g_forks; }, nullptr, [] { ++g_forks; }), 0);
  java::Run(Probe({"exit", "0"}));
  Probe({"exit", "0"}).Detached();
  EXPECT_EQ(g_forks, 0);
}

TEST(ProcessHostTest, AForkDoesNotOwnTheProcess) {
  std::optional<Process> process = java::Start(Probe({"echo", "exit", "3"}).KeepInputOpen());
  ExpectInFork([&process] {
    try {
      process->Wait(1ms);
      return false;
    } catch (const java::Misuse& misuse) {
      return std::string(misuse.what()) == "the Process belongs to the process that has started it, not to a fork";
    }
  });
  ExpectInFork([&process] { return process.reset(), true; });
  EXPECT_FALSE(process->Wait(100ms));
  process->CloseInput();
  EXPECT_EQ(process->Wait().exitCode, 3);
  ExpectInFork([&process] { return process.reset(), true; });
  EXPECT_EQ(process->Wait().exitCode, 3);
}

TEST(ProcessHostTest, AForkThatLivesOnDoesNotKeepTheInputOpen) {
  Process process = java::Start(Probe({"echo", "says", "end"}).KeepInputOpen());
  const pid_t other = fork();
  if (other == 0) {
    sleep(600);
    _exit(0);
  }
  process.Write("text ");
  process.CloseInput();
  const auto outcome = process.Wait(Patience);
  kill(other, SIGKILL);
  waitpid(other, nullptr, 0);
  ASSERT_TRUE(outcome);
  EXPECT_EQ(outcome->output, "text end");
}

TEST(ProcessHostTest, AHostWithoutStandardDescriptorsRunsPrograms) {
  ProbeHome();
  for (int closed = 1; closed < 8; ++closed) {
    ExpectInFork([closed] {
      for (int i = 0; i < 3; ++i) {
        if ((closed & 1 << i) != 0) close(i);
      }
      const Outcome outcome = java::Run(Probe({"echo", "complains", "error"}).Input("input"));
      const Outcome shown = java::Run(Probe({"descriptors"}).InheritError());
      // What other code of the host prints to its closed descriptors goes nowhere.
      Process process = java::Start(Probe({"echo"}).KeepInputOpen());
      for (int i = 0; i < 3; ++i) {
        if ((closed & 1 << i) != 0 && (write(i, "x", 1) != -1 || errno != EBADF)) return false;
      }
      process.CloseInput();
      return outcome.output == "input" && outcome.error == "error" && outcome.exitCode == 0 &&
             shown.output == "0 1 2 " && process.Wait().output.empty();
    });
  }
}

TEST(ProcessHostTest, NoOtherDescriptorReachesTheProgram) {
  const int leaking = open("/dev/null", O_RDONLY);  // not closed on execution
  ASSERT_GE(leaking, 0);
  Process other = java::Start(Probe({"echo"}).KeepInputOpen());
  EXPECT_EQ(java::Run(Probe({"descriptors"})).output, "0 1 2 ");
  const auto file = ProbeHome() / "descriptors.txt";
  Probe({"descriptors"}).OutputFile(file).Detached();
  EXPECT_TRUE(Eventually([&file] {
    std::ifstream stream(file);
    std::string line;
    std::getline(stream, line);
    return line == "0 1 2 ";
  }));
  close(leaking);
}

TEST(ProcessHostTest, NoBrokenPipeReachesTheHost) {
  const OnSignal handler(SIGPIPE, Count);
  g_signals = 0;
  Process process = java::Start(Probe({"exit", "0"}).KeepInputOpen());
  EXPECT_FALSE(process.Write(std::string(1 << 22, 'x')));
  java::Run(Probe({"exit", "0"}).Input(std::string(1 << 22, 'x')));
  EXPECT_EQ(g_signals, 0);
}

TEST(ProcessHostTest, AProgramBeginsWithoutBlockedOrIgnoredSignals) {
  const OnSignal ignored(SIGHUP, SIG_IGN);
  const OnSignal handled(SIGUSR2, Count);
  sigset_t set;
  sigset_t before;
  sigemptyset(&set);
  sigaddset(&set, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &set, &before);
  const auto home = HomeOfScript("signals", "exec grep -E '^Sig(Blk|Ign)' /proc/self/status\n");
  const Outcome outcome = java::Run(java::Program::MainClass("X").Runtime(home));
  EXPECT_EQ(outcome.output, "SigBlk:\t0000000000000000\nSigIgn:\t0000000000000000\n");
  sigset_t after;
  pthread_sigmask(SIG_SETMASK, &before, &after);
  EXPECT_EQ(sigismember(&after, SIGTERM), 1);
  EXPECT_EQ(sigismember(&after, SIGUSR1), 0);
}

TEST(ProcessHostTest, ASignalOfTheHostDoesNotRunOnAProgramsThread) {
  const OnSignal handler(SIGUSR1, Count);
  g_signals = 0;
  sigset_t set;
  sigset_t before;
  sigemptyset(&set);
  sigaddset(&set, SIGUSR1);
  Process process = java::Start(Probe({"sleep", Forever}));
  pthread_sigmask(SIG_BLOCK, &set, &before);
  kill(getpid(), SIGUSR1);
  std::this_thread::sleep_for(50ms);
  EXPECT_EQ(g_signals, 0);
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  EXPECT_EQ(g_signals, 1);
}

TEST(ProcessHostTest, SignalsDoNotDisturbARun) {
  const OnSignal handler(SIGALRM, Count, 0);
  g_signals = 0;
  const itimerval often{{0, 2000}, {0, 2000}};
  const itimerval never{};
  setitimer(ITIMER_REAL, &often, nullptr);
  const Outcome outcome = java::Run(Probe({"flood", "8000000"}).Input(std::string(8000000, 'x')));
  setitimer(ITIMER_REAL, &never, nullptr);
  ASSERT_EQ(outcome.error.size(), 8000000u);
  EXPECT_EQ(outcome.output.substr(8000000), "\n8000000\n");
  EXPECT_GT(g_signals, 0);
}

TEST(ProcessHostTest, AProgramLeadsItsOwnGroupAndSession) {
  const Process process = java::Start(Probe({"sleep", Forever}));
  const auto id = static_cast<pid_t>(process.Id());
  EXPECT_EQ(getpgid(id), id);
  EXPECT_EQ(getsid(id), id);
}

TEST(ProcessHostTest, ADetachedProgramIsNoChild) {
  const auto id = static_cast<pid_t>(Probe({"sleep", Forever}).Detached());
  EXPECT_EQ(waitpid(id, nullptr, 0), -1);
  EXPECT_EQ(errno, ECHILD);
  EXPECT_EQ(getsid(id), id);
  KillOther(static_cast<unsigned long>(id));
}

// What loses its parent becomes a child of such a host.
TEST(ProcessHostTest, ADetachedProgramThatCannotStartLeavesNothingToASubreaper) {
  ProbeHome();
  ExpectInFork([] {
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    try {
      Probe({}).Folder(ProbeHome() / "nowhere").Detached();
      return false;
    } catch (const java::StartFailure&) {
      return waitpid(-1, nullptr, __WALL) == -1 && errno == ECHILD;
    }
  });
}

// What loses its parent when it is killed becomes a child of such a host, which knows nothing of it.
TEST(ProcessHostTest, WhatIsKilledLeavesNothingToASubreaper) {
  ProbeHome();
  enum class Way { Kill, Drop, Stop, Throw };
  for (const Way way : {Way::Kill, Way::Drop, Way::Stop, Way::Throw}) {
    ExpectInFork([way] {
      prctl(PR_SET_CHILD_SUBREAPER, 1);
      const pid_t own = fork();  // in the host's own session
      if (own == 0) _exit(17);
      std::atomic<int> count = 0;
      java::Program program = Probe({"deaf", "tree", Forever}).OnOutputLine([&](std::string_view) {
        if (++count == 4 && way == Way::Throw) throw std::domain_error("enough");
      });
      std::optional<Process> process = java::Start(program);
      if (!Eventually([&count] { return count == 4; })) return false;
      if (way == Way::Kill) process->Kill();
      if (way == Way::Drop) process.reset();
      if (way == Way::Stop) process->Stop(10ms);
      try {
        if (process) process->Wait();
      } catch (const std::domain_error&) {
      }
      int status = 0;
      return waitpid(-1, &status, __WALL) == own && WEXITSTATUS(status) == 17 && waitpid(-1, &status, __WALL) == -1 &&
             errno == ECHILD;
    });
  }
}

TEST(ProcessHostTest, AGrandchildWhoseParentHasEndedIsFoundInTheSession) {
  // A shell with job control puts it in its own group.
  const auto home = HomeOfScript("orphan", "bash -c 'set -m; sleep 600 >&2 & echo $!'\necho .\nsleep 600\n");
  std::atomic<unsigned long> orphan = 0;
  std::atomic<bool> isAlone = false;
  Process process = java::Start(java::Program::MainClass("X").Runtime(home).OnOutputLine([&](std::string_view line) {
    if (line != ".") {
      orphan = std::stoul(std::string(line));
    } else {
      isAlone = true;
    }
  }));
  ASSERT_TRUE(Eventually([&isAlone] { return isAlone.load(); }));
  EXPECT_TRUE(Runs(orphan));
  EXPECT_NE(getpgid(static_cast<pid_t>(orphan.load())), static_cast<pid_t>(process.Id()));
  process.Kill();
  EXPECT_TRUE(Eventually([&] { return !Runs(orphan); }));
}

}  // namespace
}  // namespace tests
