#include "platform/linux/ReleasedChildren.h"

#include <dirent.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <cstdio>

namespace torvan::platform {
namespace {

rlim_t Mark() {
  rlimit own{};
  getrlimit(RLIMIT_LOCKS, &own);
  return own.rlim_cur - 1;
}

// False when it still runs.
bool Reap(pid_t id) {
  siginfo_t end{};
  return waitid(P_PID, static_cast<id_t>(id), &end, WEXITED | WNOHANG) == 0 && end.si_pid == id;
}

bool ReapIfReleased(pid_t id) {
  rlimit limit{};
  return prlimit(id, RLIMIT_LOCKS, nullptr, &limit) == 0 && limit.rlim_cur == Mark() && Reap(id);
}

// A thread has its own file of the children that it started: numbers, with a blank after each.
void ReapReleasedOf(const char* thread) {
  char path[64];
  std::snprintf(path, sizeof(path), "/proc/self/task/%.20s/children", thread);
  std::FILE* const children = std::fopen(path, "re");
  if (children == nullptr) return;
  pid_t id = 0;
  for (int byte = std::getc(children); byte != EOF; byte = std::getc(children)) {
    if (byte == ' ') {
      ReapIfReleased(id);
      id = 0;
    } else {
      id = id * 10 + (byte - '0');
    }
  }
  std::fclose(children);
}

void ReapReleasedOfAllThreads() {
  DIR* const threads = opendir("/proc/self/task");
  if (threads == nullptr) return;
  while (const dirent* thread = readdir(threads)) {
    if (thread->d_name[0] != '.') ReapReleasedOf(thread->d_name);
  }
  closedir(threads);
}

}  // namespace

void ReapOnceEnded(pid_t id) {
  rlimit limit{};
  if (Reap(id) || prlimit(id, RLIMIT_LOCKS, nullptr, &limit) != 0) return;
  limit.rlim_cur = Mark();
  prlimit(id, RLIMIT_LOCKS, &limit, nullptr);
}

void ReapReleased() {
  // The kernel names the first child that has ended. All are checked only if that one is not ours to reap: the host's,
  // or one with a handle.
  for (;;) {
    siginfo_t end{};
    if (waitid(P_ALL, 0, &end, WEXITED | WNOHANG | WNOWAIT) != 0 || end.si_pid == 0) return;
    if (!ReapIfReleased(end.si_pid)) break;
  }
  ReapReleasedOfAllThreads();
}

}  // namespace torvan::platform
