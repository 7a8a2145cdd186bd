#include "platform/linux/Processes.h"

#include <fcntl.h>
#include <mirel/base/Base.h>
#include <poll.h>
#include <signal.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "platform/linux/ReleasedChildren.h"
#include "platform/linux/Spawn.h"

namespace torvan::platform {
namespace {

// A process, and not another one that gets its number later.
struct Identity {
  pid_t id = 0;
  unsigned long long startTime = 0;  // in the system's ticks; 0: not known
};

struct Child : mirel::base::CBase {
  pid_t parent = getpid();
  Identity identity;          // unknown when the host reaped the child before it could be read
  bool killed = false;        // EndChild was called
  unsigned int exitCode = 0;  // of EndChild
};

// Null for null, and for the copy that a forked process has of its parent's handle: the child is its parent's.
Child* OwnChild(ProcessHandle handle) {
  Child* const child = static_cast<Child*>(handle);
  return child != nullptr && child->parent == getpid() ? child : nullptr;
}

// 0 when it cannot be read.
unsigned long long StartTimeOf(pid_t id) {
  char path[32];
  std::snprintf(path, sizeof(path), "/proc/%d/stat", id);
  const int file = open(path, O_RDONLY | O_CLOEXEC);
  if (file < 0) return 0;
  char text[1024];
  const ssize_t size = read(file, text, sizeof(text) - 1);
  close(file);
  text[size > 0 ? size : 0] = 0;
  // The second field is the program's name in parentheses, which may hold anything; the time is the 22nd.
  const char* field = std::strrchr(text, ')');
  for (int number = 2; field != nullptr && number < 22; ++number) field = std::strchr(field + 1, ' ');
  if (field == nullptr) return 0;
  unsigned long long time = 0;
  while (*++field >= '0' && *field <= '9') time = time * 10 + static_cast<unsigned long long>(*field - '0');
  return time;
}

// Asks how a child of this process is, and changes nothing: `end.si_pid` is 0 while it runs. False when it is no child,
// or one that was reaped.
bool Ask(const Identity& child, siginfo_t& end) {
  end = {};
  if (waitid(P_PID, static_cast<id_t>(child.id), &end, WEXITED | WNOHANG | WNOWAIT) != 0) return false;
  if (child.startTime == 0) return true;
  const unsigned long long startTime = StartTimeOf(child.id);
  return startTime == 0 || startTime == child.startTime;
}

bool IsRunning(const Identity& child) {
  siginfo_t end;
  return Ask(child, end) && end.si_pid == 0;
}

// A process descriptor (pidfd), held within one call only. If a child still runs after its descriptor was opened, the
// descriptor always means that child, whereas the number means it until the host reaps it. By system call, since glibc
// has functions for these from version 2.36 on.
class ProcessDescriptor {
 public:
  explicit ProcessDescriptor(pid_t id) : m_descriptor(static_cast<int>(syscall(SYS_pidfd_open, id, 0))) {}
  ~ProcessDescriptor() {
    if (IsOpen()) close(m_descriptor);
  }
  ProcessDescriptor(const ProcessDescriptor&) = delete;
  ProcessDescriptor& operator=(const ProcessDescriptor&) = delete;

  bool IsOpen() const { return m_descriptor >= 0; }
  int Get() const { return m_descriptor; }

 private:
  int m_descriptor;
};

// Sends a signal to a child that runs; false when it does not.
bool Signal(const Identity& child, int signal) {
  const ProcessDescriptor descriptor(child.id);
  if (!IsRunning(child)) return false;
  // A host that can open no more descriptors must still be able to end its programs.
  if (!descriptor.IsOpen()) return kill(child.id, signal) == 0;
  return syscall(SYS_pidfd_send_signal, descriptor.Get(), signal, nullptr, 0) == 0;
}

constexpr std::int64_t NanosecondsOfSecond = 1000000000;

std::int64_t Now() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec * NanosecondsOfSecond + now.tv_nsec;
}

unsigned int WaitForEnd(pid_t id) {
  siginfo_t end;
  while (waitid(P_PID, static_cast<id_t>(id), &end, WEXITED | WNOWAIT) != 0 && errno == EINTR) {
  }
  return WaitEnded;
}

unsigned int WaitForEnd(const ProcessDescriptor& descriptor, unsigned int milliseconds) {
  const std::int64_t deadline = Now() + std::int64_t{milliseconds} * 1000000;
  for (;;) {
    const std::int64_t left = deadline - Now();
    const timespec timeout{left > 0 ? left / NanosecondsOfSecond : 0, left > 0 ? left % NanosecondsOfSecond : 0};
    pollfd entry{descriptor.Get(), POLLIN, 0};
    const int count = ppoll(&entry, 1, &timeout, nullptr);
    if (count > 0) return (entry.revents & POLLIN) != 0 ? WaitEnded : WaitFailed;
    if (count == 0) return WaitTimeout;
    if (errno != EINTR) return WaitFailed;
  }
}

}  // namespace

bool StartChild(char* const* arguments, bool inheritDescriptors, StartedProcess* started) {
  ReapReleased();
  // A child that can be neither awaited nor ended must not be started.
  if (!ProcessDescriptor(getpid()).IsOpen()) return false;
  Child* const child = new Child;
  const pid_t id = Spawn(arguments, inheritDescriptors);
  if (id == 0) {
    delete child;
    return false;
  }
  siginfo_t end;
  const Identity identity{id, StartTimeOf(id)};
  if (Ask(identity, end)) child->identity = identity;
  *started = {child, nullptr, static_cast<unsigned int>(id)};
  return true;
}

unsigned int WaitForChild(ProcessHandle handle, unsigned int milliseconds) {
  ReapReleased();
  const Child* const child = OwnChild(handle);
  if (child == nullptr) return WaitFailed;
  const ProcessDescriptor descriptor(child->identity.id);
  if (!IsRunning(child->identity)) return WaitEnded;
  if (milliseconds == 0) return WaitTimeout;
  if (milliseconds == WaitInfinite) return WaitForEnd(child->identity.id);
  return descriptor.IsOpen() ? WaitForEnd(descriptor, milliseconds) : WaitFailed;
}

bool ExitCodeOfChild(ProcessHandle handle, unsigned int* exitCode) {
  ReapReleased();
  const Child* const child = OwnChild(handle);
  siginfo_t end;
  if (child == nullptr || !Ask(child->identity, end)) return false;
  if (end.si_pid == 0) {
    *exitCode = ExitCodeOfRunning;
  } else if (end.si_code == CLD_EXITED) {
    *exitCode = static_cast<unsigned int>(end.si_status);
  } else {
    const bool byEndChild = child->killed && end.si_status == SIGKILL;
    *exitCode = byEndChild ? child->exitCode : 128 + static_cast<unsigned int>(end.si_status);
  }
  return true;
}

bool EndChild(ProcessHandle handle, unsigned int exitCode) {
  ReapReleased();
  Child* const child = OwnChild(handle);
  if (child == nullptr || !Signal(child->identity, SIGKILL)) return false;
  child->killed = true;
  child->exitCode = exitCode;
  return true;
}

bool SignalChild(unsigned int event, unsigned int processId) {
  ReapReleased();
  if (event != ControlC && event != ControlBreak) return false;
  return Signal({static_cast<pid_t>(processId)}, event == ControlC ? SIGINT : SIGQUIT);
}

void ReleaseChild(ProcessHandle handle) {
  siginfo_t end;
  const Child* const child = OwnChild(handle);
  if (child != nullptr && Ask(child->identity, end)) ReapOnceEnded(child->identity.id);
  delete static_cast<Child*>(handle);
  ReapReleased();
}

}  // namespace torvan::platform
