// A system that fails, at each of its calls.
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sched.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <fstream>
#include <mutex>
#include <thread>
#include <vector>

#include "ThreadSanitizer.h"
#include "java/processes/FailingCalls.h"

namespace {

std::atomic<bool> g_isTaken = false;
// No program gets a signal through its descriptor, as if it had been waited for; what it has started does. And how
// often a thread has asked the system for what is ready.
std::atomic<bool> g_isDeaf = false;
std::atomic<long> g_refusedSignals = 0;
std::atomic<long> g_polls = 0;
// The least descriptor that the library has written a file by.
std::atomic<int> g_leastWritten = INT_MAX;
// The thread whose calls fail, or 0 for all.
std::atomic<pid_t> g_thread = 0;
// The system's error of the next tee(), or 0.
std::atomic<int> g_errorOfTee = 0;

// Those of a child before it becomes a program count, too.
bool Fails() {
  if ((g_thread != 0 && g_thread != gettid()) || !tests::IsToFail()) return false;
  errno = tests::g_error;
  return true;
}

}  // namespace

// The linker redirects the library's calls here (--wrap), also those of shared libraries that a sanitizer has changed.
#pragma GCC visibility push(default)
extern "C" {

#define WRAPPED(result, name, parameters, arguments) \
  result __real_##name parameters;                   \
  result __wrap_##name parameters;                   \
  result __wrap_##name parameters { return Fails() ? -1 : __real_##name arguments; }

// clang-format off
WRAPPED(int, eventfd, (unsigned count, int flags), (count, flags))
WRAPPED(int, socketpair, (int domain, int type, int protocol, int* ends), (domain, type, protocol, ends))
WRAPPED(int, pipe2, (int* ends, int flags), (ends, flags))
WRAPPED(ssize_t, read, (int from, void* to, std::size_t size), (from, to, size))
WRAPPED(ssize_t, send, (int to, const void* from, std::size_t size, int flags), (to, from, size, flags))
WRAPPED(int, mkostemp, (char* name, int flags), (name, flags))
WRAPPED(int, shutdown, (int socket, int how), (socket, how))
// clang-format on
#undef WRAPPED

int __real_poll(pollfd* entries, nfds_t count, int time);
int __wrap_poll(pollfd* entries, nfds_t count, int time);
int __wrap_poll(pollfd* entries, nfds_t count, int time) {
  ++g_polls;
  return Fails() ? -1 : __real_poll(entries, count, time);
}

// Fails in the one way that there is: other code has taken the child.
int __real_waitid(idtype_t type, id_t id, siginfo_t* end, int options);
int __wrap_waitid(idtype_t type, id_t id, siginfo_t* end, int options);
int __wrap_waitid(idtype_t type, id_t id, siginfo_t* end, int options) {
  const int result = __real_waitid(type, id, end, options);
  if (!g_isTaken) return result;
  errno = ECHILD;
  return -1;
}

ssize_t __real_tee(int from, int to, std::size_t size, unsigned int flags);
ssize_t __wrap_tee(int from, int to, std::size_t size, unsigned int flags);
ssize_t __wrap_tee(int from, int to, std::size_t size, unsigned int flags) {
  errno = g_errorOfTee.exchange(0);
  return errno != 0 || Fails() ? -1 : __real_tee(from, to, size, flags);
}

ssize_t __real_write(int to, const void* from, std::size_t size);
ssize_t __wrap_write(int to, const void* from, std::size_t size);
ssize_t __wrap_write(int to, const void* from, std::size_t size) {
  g_leastWritten = std::min(g_leastWritten.load(), to);
  return Fails() ? -1 : __real_write(to, from, size);
}

int __real_open(const char* path, int flags, mode_t mode);
int __wrap_open(const char* path, int flags, ...);
int __wrap_open(const char* path, int flags, ...) {
  std::va_list more;
  va_start(more, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(more, mode_t) : 0;
  va_end(more);
  return Fails() ? -1 : __real_open(path, flags, mode);
}

int __real_fcntl(int descriptor, int command, long argument);
int __wrap_fcntl(int descriptor, int command, long argument);
int __wrap_fcntl(int descriptor, int command, long argument) {
  return Fails() ? -1 : __real_fcntl(descriptor, command, argument);
}

long __real_syscall(long number, long a, long b, long c, long d, long e, long f);
long __wrap_syscall(long number, long a, long b, long c, long d, long e, long f);
long __wrap_syscall(long number, long a, long b, long c, long d, long e, long f) {
  thread_local long t_opened = -1;  // the descriptor of what a program has started; its own comes with its start
  if (g_isDeaf && number == SYS_pidfd_send_signal && a != t_opened) {
    ++g_refusedSignals;
    errno = ESRCH;
    return -1;
  }
  const long result = Fails() ? -1 : __real_syscall(number, a, b, c, d, e, f);
  if (number == SYS_pidfd_open) t_opened = result;
  return result;
}

int __real___clone(int (*function)(void*), void* stack, int flags, void* argument, int* process);
int __wrap___clone(int (*function)(void*), void* stack, int flags, void* argument, int* process);
int __wrap___clone(int (*function)(void*), void* stack, int flags, void* argument, int* process) {
  return Fails() ? -1 : __real___clone(function, stack, flags, argument, process);
}

// Threads are made by the C++ library.
int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*function)(void*), void* argument) {
  using Create = int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
  static const auto s_create = reinterpret_cast<Create>(dlsym(RTLD_NEXT, "pthread_create"));
  return Fails() ? EAGAIN : s_create(thread, attributes, function, argument);
}
}
#pragma GCC visibility pop

namespace tests {
namespace {

using java::Ended;
using java::Outcome;
using java::Process;

TEST(RunningFailingSystemTest, ARunFailsWithTheStepThatFailed) {
  const auto texts = FailEach(EIO, [] {
    const Outcome outcome = java::Run(Probe({"echo", "descriptors"}).Folder(ProbeHome()).Input("text"));
    // A failed call that is not reported has no effect.
    EXPECT_EQ(outcome.output, "text0 1 2 ");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.ended, Ended::Exited);
  });
  const std::string end = " for \"" + (ProbeHome() / "bin" / "java").string() + "\": Input/output error";
  for (const std::string step :
       {"make an event", "make an input", "make a pipe", "make a process", "hand over the standard streams"}) {
    EXPECT_EQ(texts.count("Could not " + step + end), 1u) << step;
  }
  EXPECT_EQ(texts.count("Could not change to the folder \"" + ProbeHome().string() + "\"" + end), 1u);
  EXPECT_EQ(texts.count("Could not run \"" + (ProbeHome() / "bin" / "java").string() + "\": Input/output error"), 1u);
  EXPECT_GE(CountOf(texts, "Could not write the input of process "), 1u);
  EXPECT_GE(CountOf(texts, "Could not wait for the end of process "), 1u);
  EXPECT_GE(CountOf(texts, "Could not read the output of process "), 1u);
}

TEST(RunningFailingSystemTest, AProcessFailsWithTheStepThatFailed) {
  const auto texts = FailEach(EAGAIN, [] {
    std::atomic<bool> isRead = false;
    Process process = java::Start(
        Probe({"echo"}).KeepInputOpen().OnOutputLine([&isRead](std::string_view line) { isRead = line == "text"; }));
    // The program ends once its output was read: a last read that fails as if there were nothing would lose that.
    if (process.Write("text\n")) {
      EXPECT_TRUE(Eventually([&] { return isRead || process.Wait(0ms); }));
    }
    process.CloseInput();
    process.Wait();
    EXPECT_TRUE(isRead);
  });
  EXPECT_EQ(texts.count("Could not start a thread for the program: Resource temporarily unavailable"), 1u);
}

TEST(RunningFailingSystemTest, AnExitCodeThatOtherCodeHasTakenIsLost) {
  ProbeHome();
  const Held before = HeldNow();
  g_isTaken = true;
  const Process process = java::Start(Probe({"says", "x"}));
  EXPECT_THROW(process.Wait(), java::Failure);
  g_isTaken = false;
  ExpectThrow<java::Failure>([&] { process.Wait(); },
                             "The exit code of process " + std::to_string(process.Id()) +
                                 " is lost: other code of this process waits for every child, and has taken it");
  ExpectHeld(before);
}

// A program may take a while to end after it was killed, such as one that waits for a disk.
TEST(RunningFailingSystemTest, AProgramThatIsDroppedAndDoesNotEndYetIsWaitedForQuietly) {
  std::atomic<int> asked = 0;
  std::optional<Process> process =
      java::Start(Probe({"sleep", Forever}).InputFrom([&asked]() -> std::optional<std::string> {
        ++asked;
        return "";
      }));
  const auto id = static_cast<pid_t>(process->Id());
  ASSERT_TRUE(Eventually([&asked] { return asked > 1; }));
  g_isDeaf = true;
  std::thread dropper([&process] { process.reset(); });
  EXPECT_TRUE(Eventually([] { return g_refusedSignals > 0; }));
  const int askedBefore = asked;
  g_polls = 0;
  std::this_thread::sleep_for(300ms);
  EXPECT_LT(g_polls, 10);
  EXPECT_LE(asked, askedBefore + 1);  // the program's thread may have been about to ask
  EXPECT_TRUE(Runs(static_cast<unsigned long>(id)));
  g_isDeaf = false;
  kill(id, SIGKILL);
  dropper.join();
}

// The system says that the program was waited for, so its number is another process's here: that of a tree that runs.
TEST(RunningFailingSystemTest, WhatHasTheNumberOfAProgramThatOtherCodeHasTakenRunsOn) {
  std::mutex mutex;
  std::vector<unsigned long> ids;
  Process process = java::Start(Probe({"tree", Forever}).OnOutputLine([&](std::string_view line) {
    const std::lock_guard<std::mutex> lock(mutex);
    ids.push_back(std::stoul(std::string(line)));
  }));
  const auto count = [&] {
    const std::lock_guard<std::mutex> lock(mutex);
    return std::count_if(ids.begin(), ids.end(), Runs);
  };
  ASSERT_TRUE(Eventually([&] { return count() == 4; }));
  g_refusedSignals = 0;
  g_isDeaf = true;
  std::thread killer([&process] { process.Kill(); });
  EXPECT_TRUE(Eventually([] { return g_refusedSignals > 0; }));
  std::this_thread::sleep_for(100ms);  // whatever would end it
  EXPECT_EQ(count(), 4);
  g_isDeaf = false;
  process.Kill();
  killer.join();
  EXPECT_TRUE(Eventually([&] { return count() == 0; }));
}

TEST(RunningFailingSystemTest, TheArgumentFileOfAHostWithoutInputIsNotItsInput) {
  ProbeHome();
  const int input = dup(STDIN_FILENO);
  close(STDIN_FILENO);
  g_leastWritten = INT_MAX;
  const Outcome outcome = java::Run(Probe({"says", "x", "exit", "0", std::string(200000, 'x')}));
  dup2(input, STDIN_FILENO);
  close(input);
  EXPECT_EQ(outcome.output, "x");
  EXPECT_GT(g_leastWritten, STDERR_FILENO);
  EXPECT_LT(g_leastWritten, INT_MAX);
}

TEST(RunningFailingSystemTest, AProgramThatIsTooLongLeavesNoFile) {
  SKIP_AMOUNT_WITH_THREAD_SANITIZER();
  const auto folder = ProbeHome() / "temporary";
  std::filesystem::create_directories(folder);
  UseTemporaryFolder(folder);
  const auto texts = FailEach(ENOSPC, [&folder] {
    const auto clean = [&folder] { return std::filesystem::is_empty(folder); };
    try {
      EXPECT_EQ(java::Run(Probe({"says", "x", "exit", "0", std::string(200000, 'x')})).output, "x");
    } catch (const java::Failure&) {
      EXPECT_TRUE(clean());
      throw;
    }
    EXPECT_TRUE(clean());
  });
  unsetenv("TMPDIR");
  EXPECT_EQ(CountOf(texts, "Could not write the argument file \"" + folder.string() + "/java-arguments-"),
            2u);  // made, written
}

TEST(RunningFailingSystemTest, ANamedPipeFailsWithItsFile) {
  const auto file = ProbeHome() / "pipe of failures";
  ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
  const int writer = open(file.c_str(), O_RDWR | O_CLOEXEC);
  const auto texts = FailEach(EIO, [&file] { java::Run(Probe({"exit", "0"}).InputFile(file)); });
  close(writer);
  std::filesystem::remove(file);
  EXPECT_EQ(texts.count("Could not open the input file \"" + file.string() + "\" for \"" +
                        (ProbeHome() / "bin" / "java").string() + "\": Input/output error"),
            1u);
}

TEST(RunningFailingSystemTest, ANamedPipeOfWhichTheSystemCannotTellItsWriterIsRefused) {
  const auto file = ProbeHome() / "pipe without a writer";
  ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
  struct Row {
    int error;
    const char* reason;
  };
  const Row rows[] = {{EINTR, "no program writes to this named pipe yet"},  // it is asked again
                      {ENOMEM, "Cannot allocate memory"},
                      {EINVAL, "Invalid argument"}};
  for (const Row& row : rows) {
    g_errorOfTee = row.error;
    ExpectThrow<java::StartFailure>([&file] { java::Run(Probe({"echo"}).InputFile(file)); },
                                    "Could not open the input file \"" + file.string() + "\" for \"" +
                                        (ProbeHome() / "bin" / "java").string() + "\": " + row.reason);
    EXPECT_EQ(g_errorOfTee, 0);
  }
  std::filesystem::remove(file);
}

TEST(RunningFailingSystemTest, ADetachedProgramFailsWithTheStepThatFailed) {
  const auto texts = FailEach(EIO, [] {
    const auto id = Probe({"exit", "0"}).Detached();
    EXPECT_TRUE(Eventually([id] { return !Runs(id); }));
  });
  const std::string end = " for \"" + (ProbeHome() / "bin" / "java").string() + "\": Input/output error";
  EXPECT_EQ(texts.count("Could not make a process" + end), 1u);
  EXPECT_EQ(texts.count("Could not open the input file \"/dev/null\"" + end), 1u);
}

TEST(RunningFailingSystemTest, KillingEndsTheProgramWhateverFails) {
  g_thread = gettid();  // what the program's own thread cannot do is reported
  for (long calls = 0; calls < 40; ++calls) {
    Process process = java::Start(Probe({"sleep", Forever}));
    g_error = ENOMEM;
    g_callsLeft = calls;
    process.Kill();
    g_callsLeft = -1;
    EXPECT_EQ(process.Wait().ended, Ended::Killed) << calls;
  }
  g_thread = 0;
}

}  // namespace
}  // namespace tests
