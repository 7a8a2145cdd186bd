#include "platform/linux/Processes.h"

#include <mirel/base/Base.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/epoll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <ctime>
#include <utility>

// The header of glibc 2.36 declares its functions without C linkage.
extern "C" {
#include <sys/pidfd.h>
}

namespace torvan::platform {
namespace {

struct Child : mirel::base::CBase {
  int descriptor = -1;
  bool killed = false;        // EndChild was called
  unsigned int exitCode = 0;  // of EndChild

  ~Child() {
    if (descriptor >= 0) close(descriptor);
  }
};

// Asks how a child is, and changes nothing: `end.si_pid` is 0 while it runs. False when the host has reaped it.
bool Ask(int descriptor, siginfo_t& end) {
  end = {};
  return waitid(P_PIDFD, static_cast<id_t>(descriptor), &end, WEXITED | WNOHANG | WNOWAIT) == 0;
}

bool IsRunning(int descriptor) {
  siginfo_t end;
  return Ask(descriptor, end) && end.si_pid == 0;
}

// Reaps a child that has ended, and lets go of it in any case.
void Drop(int descriptor) {
  siginfo_t end;
  waitid(P_PIDFD, static_cast<id_t>(descriptor), &end, WEXITED | WNOHANG);
  close(descriptor);
}

// The descriptors of children whose handles were released. The kernel keeps the set: threads share it without a lock
// of ours. Without it (a process may open no more descriptors) such a child is not reaped.
int s_released = epoll_create1(EPOLL_CLOEXEC);

struct ReleasedCloser {
  // A handle in a static object of the host can be released later still.
  ~ReleasedCloser() { close(std::exchange(s_released, -1)); }
};
const ReleasedCloser s_releasedCloser;

void AddReleased(int descriptor) {
  epoll_event event{};
  event.events = EPOLLIN | EPOLLONESHOT;  // one end is told to one thread
  event.data.fd = descriptor;
  if (epoll_ctl(s_released, EPOLL_CTL_ADD, descriptor, &event) != 0) Drop(descriptor);
}

void ReapReleased() {
  for (epoll_event event; epoll_wait(s_released, &event, 1, 0) > 0;) Drop(event.data.fd);
}

// How a child is to begin, in the terms of posix_spawn.
class SpawnSettings {
 public:
  explicit SpawnSettings(bool inheritDescriptors) {
    m_good = posix_spawnattr_init(&attributes) == 0 && posix_spawn_file_actions_init(&actions) == 0;
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    // A host's libraries open descriptors that are not closed on execution; only we can keep them from the child.
    if (!inheritDescriptors) m_good &= posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1) == 0;
  }
  ~SpawnSettings() {
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;

  bool IsGood() const { return m_good; }

  posix_spawnattr_t attributes;
  posix_spawn_file_actions_t actions;

 private:
  bool m_good;
};

// Asked before a child is started: one that cannot be held must not be started.
bool HasProcessDescriptors() {
  const int own = pidfd_open(getpid(), 0);
  if (own < 0) return false;
  close(own);
  return true;
}

void EndUnheld(pid_t id) {
  kill(id, SIGKILL);
  while (waitpid(id, nullptr, 0) < 0 && errno == EINTR) {
  }
}

constexpr std::int64_t NanosecondsOfSecond = 1000000000;

std::int64_t Now() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec * NanosecondsOfSecond + now.tv_nsec;
}

unsigned int WaitForEnd(int descriptor, unsigned int milliseconds) {
  const std::int64_t deadline = Now() + std::int64_t{milliseconds} * 1000000;
  for (;;) {
    const std::int64_t left = deadline - Now();
    const timespec timeout{left > 0 ? left / NanosecondsOfSecond : 0, left > 0 ? left % NanosecondsOfSecond : 0};
    pollfd entry{descriptor, POLLIN, 0};
    const int count = ppoll(&entry, 1, milliseconds == WaitInfinite ? nullptr : &timeout, nullptr);
    if (count > 0) return (entry.revents & POLLIN) != 0 ? WaitEnded : WaitFailed;
    if (count == 0) return WaitTimeout;
    if (errno != EINTR) return WaitFailed;
  }
}

}  // namespace

bool StartChild(char* const* arguments, bool inheritDescriptors, StartedProcess* started) {
  ReapReleased();
  if (!HasProcessDescriptors()) return false;
  SpawnSettings settings(inheritDescriptors);
  if (!settings.IsGood()) return false;
  Child* const child = new Child;
  pid_t id = 0;
  if (posix_spawnp(&id, arguments[0], &settings.actions, &settings.attributes, arguments, environ) != 0) {
    delete child;
    return false;
  }
  child->descriptor = pidfd_open(id, 0);
  if (child->descriptor < 0) {
    EndUnheld(id);
    delete child;
    return false;
  }
  *started = {child, nullptr, static_cast<unsigned int>(id)};
  return true;
}

unsigned int WaitForChild(ProcessHandle handle, unsigned int milliseconds) {
  ReapReleased();
  return handle != nullptr ? WaitForEnd(static_cast<const Child*>(handle)->descriptor, milliseconds) : WaitFailed;
}

bool ExitCodeOfChild(ProcessHandle handle, unsigned int* exitCode) {
  ReapReleased();
  if (handle == nullptr) return false;
  const Child& child = *static_cast<const Child*>(handle);
  siginfo_t end;
  if (!Ask(child.descriptor, end)) return false;
  if (end.si_pid == 0) {
    *exitCode = ExitCodeOfRunning;
  } else if (end.si_code == CLD_EXITED) {
    *exitCode = static_cast<unsigned int>(end.si_status);
  } else {
    const bool byEndChild = child.killed && end.si_status == SIGKILL;
    *exitCode = byEndChild ? child.exitCode : 128 + static_cast<unsigned int>(end.si_status);
  }
  return true;
}

bool EndChild(ProcessHandle handle, unsigned int exitCode) {
  ReapReleased();
  if (handle == nullptr) return false;
  Child& child = *static_cast<Child*>(handle);
  if (!IsRunning(child.descriptor) || pidfd_send_signal(child.descriptor, SIGKILL, nullptr, 0) != 0) return false;
  child.killed = true;
  child.exitCode = exitCode;
  return true;
}

bool SignalChild(unsigned int event, unsigned int processId) {
  ReapReleased();
  if (event != ControlC && event != ControlBreak) return false;
  const int descriptor = pidfd_open(static_cast<pid_t>(processId), 0);
  if (descriptor < 0) return false;
  const bool sent =
      IsRunning(descriptor) && pidfd_send_signal(descriptor, event == ControlC ? SIGINT : SIGQUIT, nullptr, 0) == 0;
  close(descriptor);
  return sent;
}

void ReleaseChild(ProcessHandle handle) {
  if (handle != nullptr) {
    Child* const child = static_cast<Child*>(handle);
    AddReleased(std::exchange(child->descriptor, -1));
    delete child;
  }
  ReapReleased();
}

}  // namespace torvan::platform
