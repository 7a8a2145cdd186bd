#include "java/linux/Spawn.h"

#include <sched.h>
#include <signal.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "java/linux/SignalsBlocked.h"
#include "java/processes/Surroundings.h"

// The C library's own name for clone(): sanitizers replace clone() by one that takes a child in the same memory for a
// fork.
extern "C" int __clone(int (*function)(void*), void* stack, int flags, void* argument, ...);

namespace torvan::java::detail {

namespace {

constexpr int ClonePidfd = 0x1000;  // from the kernel's headers of 5.2; older C libraries lack it

constexpr std::size_t StackSize = std::size_t{64} * 1024;

enum class Step { None, Clone, Streams, Folder, Execute };

// What the child works with. It shares the memory of this process, whose calling thread waits until the child has
// become another program or has ended; so it only makes system calls, and reports what fails by writing it down here.
struct Birth {
  const char* program;
  char* const* arguments;
  char* const* environment;
  const char* folder;
  int standard[StreamCount];
  char* stackOfSecond;  // of the process that is apart

  Step failed = Step::None;
  int error = 0;
  pid_t id = 0;  // of that process
};

// What runs in the child makes system calls by itself: the C library's functions, and what a sanitizer adds to ours,
// keep state in the memory that the child shares.
#define TORVAN_IN_CHILD __attribute__((no_sanitize("address", "thread", "undefined")))

struct DirectoryEntry {
  std::uint64_t inode;
  std::int64_t offset;
  std::uint16_t size;
  std::uint8_t type;
  char name[1];
};

TORVAN_IN_CHILD int ToNumber(const char* digits) {
  int number = 0;
  for (; *digits >= '0' && *digits <= '9'; ++digits) number = 10 * number + (*digits - '0');
  return *digits == '\0' ? number : -1;
}

// For kernels before 5.9. The folder is read again until it shows nothing more to close.
TORVAN_IN_CHILD bool CloseListed() {
  const long folder = syscall(SYS_openat, AT_FDCWD, "/proc/self/fd", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder < 0) return false;
  for (bool again = true; again;) {
    again = false;
    syscall(SYS_lseek, folder, 0, SEEK_SET);
    alignas(DirectoryEntry) char entries[2048];
    for (long size; (size = syscall(SYS_getdents64, folder, entries, sizeof entries)) > 0;) {
      for (long at = 0; at < size;) {
        const auto* entry = reinterpret_cast<const DirectoryEntry*>(entries + at);
        const int number = ToNumber(entry->name);
        if (number > STDERR_FILENO && number != folder) again |= syscall(SYS_close, number) == 0;
        at += entry->size;
      }
    }
  }
  return syscall(SYS_close, folder) == 0;
}

TORVAN_IN_CHILD bool CloseAllButStandard() {
#ifdef SYS_close_range
  constexpr long CloseRange = SYS_close_range;
#else
  constexpr long CloseRange = 436;  // the same on every machine
#endif
  return syscall(CloseRange, STDERR_FILENO + 1, ~0U, 0U) == 0 || CloseListed();
}

TORVAN_IN_CHILD bool PutStreams(const int (&standard)[StreamCount]) {
  for (int i = 0; i < StreamCount; ++i) {
    if (syscall(SYS_dup3, standard[i], i, 0) < 0) return false;
  }
  return CloseAllButStandard();
}

TORVAN_IN_CHILD int Fail(Birth& birth, Step step) {
  birth.failed = step;
  birth.error = errno;
  return 127;
}

// All signals are blocked until here: no handler of the host can run in its memory twice.
TORVAN_IN_CHILD void ResetSignals() {
  const std::uint64_t defaults[4] = {};  // the kernel's form of an action, which no header has, and of a set
  for (int signal = 1; signal < NSIG; ++signal) syscall(SYS_rt_sigaction, signal, defaults, nullptr, sizeof *defaults);
  syscall(SYS_rt_sigprocmask, SIG_SETMASK, defaults, nullptr, sizeof *defaults);
}

TORVAN_IN_CHILD int Become(void* argument) {
  Birth& birth = *static_cast<Birth*>(argument);
  syscall(SYS_setsid);
  if (!PutStreams(birth.standard)) return Fail(birth, Step::Streams);
  if (birth.folder != nullptr && syscall(SYS_chdir, birth.folder) != 0) return Fail(birth, Step::Folder);
  ResetSignals();
  syscall(SYS_execve, birth.program, birth.arguments, birth.environment);
  return Fail(birth, Step::Execute);
}

// Ends at once and leaves its own child to the system; one that never became a program is reaped here.
TORVAN_IN_CHILD int BecomeParent(void* argument) {
  Birth& birth = *static_cast<Birth*>(argument);
  birth.id = __clone(Become, birth.stackOfSecond, CLONE_VM | CLONE_VFORK | SIGCHLD, argument);
  if (birth.id < 0) return Fail(birth, Step::Clone);
  if (birth.failed != Step::None) syscall(SYS_wait4, birth.id, nullptr, __WALL, nullptr);
  return 0;
}

#undef TORVAN_IN_CHILD

std::vector<char*> Pointers(const std::vector<NativeText>& texts, const char* first = nullptr) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 2);
  if (first != nullptr) pointers.push_back(const_cast<char*>(first));
  for (const NativeText& text : texts) pointers.push_back(const_cast<char*>(text.c_str()));
  pointers.push_back(nullptr);
  return pointers;
}

[[noreturn]] void Throw(const StartPlan& plan, Step step, int error) {
  std::string what = "run";
  if (step == Step::Clone) what = "make a process";
  if (step == Step::Streams) what = "hand over the standard streams";
  if (step == Step::Folder) what = "change to the folder \"" + ToText(plan.folder) + "\"";
  const std::string reason = ReasonOf(static_cast<unsigned long>(error));
  const std::string text = step == Step::Execute ? "Could not run \"" + ToText(plan.program) + "\": " + reason
                                                 : CannotStart(plan, what, reason);
  if (step == Step::Execute && error == E2BIG) throw TooLong("java/linux/Spawn", __LINE__, text);
  throw StartFailure("java/linux/Spawn", __LINE__, text);
}

// A process that never became another program sends no SIGCHLD, and no waitpid() of the host sees it.
void LetGoOf(const Descriptor& process) {
  siginfo_t end{};
  while (waitid(WaitForPidfd, static_cast<id_t>(process.Number()), &end, WEXITED | __WALL) < 0 && errno == EINTR) {
  }
}

}  // namespace

Spawned Spawn(const StartPlan& plan, const Descriptor (&standard)[StreamCount], bool apart) {
  const std::vector<char*> arguments = Pointers(plan.arguments, plan.program.c_str());
  const std::vector<char*> environment = Pointers(plan.environment);
  const std::unique_ptr<char[]> stack(new char[2 * StackSize]);
  const auto top = [&stack](std::size_t size) {
    return stack.get() + (size - (reinterpret_cast<std::uintptr_t>(stack.get()) + size) % 64);
  };
  Birth birth{plan.program.c_str(),
              arguments.data(),
              environment.data(),
              plan.folder.empty() ? nullptr : plan.folder.c_str(),
              {standard[0].Number(), standard[1].Number(), standard[2].Number()},
              top(StackSize)};

  Spawned spawned;
  int process = -1;
  {
    const SignalsBlocked blocked;
    // No signal is named that tells of its end: the system takes SIGCHLD once it has become another program.
    constexpr int Flags = CLONE_VM | CLONE_VFORK | ClonePidfd;
    spawned.id = __clone(apart ? BecomeParent : Become, top(2 * StackSize), Flags, &birth, &process);
    if (spawned.id < 0) Fail(birth, Step::Clone);
  }
  spawned.process = Descriptor(spawned.id < 0 ? -1 : process);
  if (apart || birth.failed != Step::None) {
    if (spawned.process) LetGoOf(spawned.process);
    if (birth.failed != Step::None) Throw(plan, birth.failed, birth.error);
    spawned = {birth.id, {}};
  }
  return spawned;
}

}  // namespace torvan::java::detail
