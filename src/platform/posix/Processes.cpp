#include "platform/posix/Processes.h"

#include <mirel/base/Base.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <ctime>

// The header of glibc 2.36 declares its functions without C linkage.
extern "C" {
#include <sys/pidfd.h>
}

namespace torvan::platform {
namespace {

struct Child : mirel::base::CBase {
  Child* next = nullptr;
  pid_t id = 0;
  int descriptor = -1;
  unsigned int exitCode = 0;  // of EndChild while `killed`, then of the child
  bool killed = false;        // EndChild was called
  bool gone = false;          // nothing is left to reap
  bool hasExitCode = false;
  bool released = false;

  ~Child() {
    if (descriptor >= 0) close(descriptor);
  }
};

// On Windows the system keeps this list, and guards it.
Child* s_children = nullptr;
pthread_mutex_t s_childrenMutex = PTHREAD_MUTEX_INITIALIZER;

// Notes how a child ended, and lets the system forget it. Does nothing while it runs.
void Reap(Child& child) {
  if (child.gone) return;
  siginfo_t information{};
  if (waitid(P_PIDFD, static_cast<id_t>(child.descriptor), &information, WEXITED | WNOHANG) != 0) {
    child.gone = errno == ECHILD;
    return;
  }
  if (information.si_pid == 0) return;
  child.gone = true;
  child.hasExitCode = true;
  if (information.si_code == CLD_EXITED) {
    child.exitCode = static_cast<unsigned int>(information.si_status);
  } else if (!child.killed || information.si_status != SIGKILL) {
    child.exitCode = 128 + static_cast<unsigned int>(information.si_status);
  }
}

// Guards the list for the length of a call, and first reaps what nobody has a handle of.
class Children {
 public:
  Children() {
    pthread_mutex_lock(&s_childrenMutex);
    DropReleased();
  }
  ~Children() { pthread_mutex_unlock(&s_childrenMutex); }
  Children(const Children&) = delete;
  Children& operator=(const Children&) = delete;

  void Add(Child& child) {
    child.next = s_children;
    s_children = &child;
  }

  Child* FindRunning(pid_t id) {
    for (Child* child = s_children; child != nullptr; child = child->next) {
      Reap(*child);
      if (child->id == id && !child->gone) return child;
    }
    return nullptr;
  }

  void DropReleased() {
    for (Child** link = &s_children; *link != nullptr;) {
      Child* const child = *link;
      if (child->released) Reap(*child);
      if (child->released && child->gone) {
        *link = child->next;
        delete child;
      } else {
        link = &child->next;
      }
    }
  }
};

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
  Children children;
  if (!HasProcessDescriptors()) return false;
  SpawnSettings settings(inheritDescriptors);
  if (!settings.IsGood()) return false;
  Child* const child = new Child;
  if (posix_spawnp(&child->id, arguments[0], &settings.actions, &settings.attributes, arguments, environ) != 0) {
    delete child;
    return false;
  }
  child->descriptor = pidfd_open(child->id, 0);
  if (child->descriptor < 0) {
    EndUnheld(child->id);
    delete child;
    return false;
  }
  children.Add(*child);
  *started = {child, nullptr, static_cast<unsigned int>(child->id)};
  return true;
}

unsigned int WaitForChild(ProcessHandle handle, unsigned int milliseconds) {
  if (handle == nullptr) return WaitFailed;
  Child& child = *static_cast<Child*>(handle);
  const unsigned int result = WaitForEnd(child.descriptor, milliseconds);
  const Children children;
  Reap(child);
  return result;
}

bool ExitCodeOfChild(ProcessHandle handle, unsigned int* exitCode) {
  if (handle == nullptr) return false;
  const Children children;
  Child& child = *static_cast<Child*>(handle);
  Reap(child);
  if (child.gone && !child.hasExitCode) return false;
  *exitCode = child.gone ? child.exitCode : ExitCodeOfRunning;
  return true;
}

bool EndChild(ProcessHandle handle, unsigned int exitCode) {
  if (handle == nullptr) return false;
  const Children children;
  Child& child = *static_cast<Child*>(handle);
  Reap(child);
  if (child.gone || pidfd_send_signal(child.descriptor, SIGKILL, nullptr, 0) != 0) return false;
  child.killed = true;
  child.exitCode = exitCode;
  return true;
}

bool SignalChild(unsigned int event, unsigned int processId) {
  if (event != ControlC && event != ControlBreak) return false;
  Children children;
  const Child* const child = children.FindRunning(static_cast<pid_t>(processId));
  return child != nullptr &&
         pidfd_send_signal(child->descriptor, event == ControlC ? SIGINT : SIGQUIT, nullptr, 0) == 0;
}

void ReleaseChild(ProcessHandle handle) {
  Children children;
  if (handle != nullptr) static_cast<Child*>(handle)->released = true;
  children.DropReleased();
}

}  // namespace torvan::platform
