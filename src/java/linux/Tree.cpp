#include "java/linux/Tree.h"

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <vector>

#include "java/linux/Descriptor.h"

namespace torvan::java::detail {

namespace {

constexpr int MostRounds = 16;
// With a pause that grows by a millisecond, for what was killed and has not ended yet: 2 s in all.
constexpr int MostRoundsWithPauses = 64;

struct Entry {
  pid_t id;
  pid_t parent;
  pid_t session;
  unsigned long long start;  // an id alone may be another process by now
  bool hasEnded;             // and only waits for its parent
};

// Returns false for a process that is no more.
bool Read(pid_t id, Entry& entry) {
  char path[32];
  std::snprintf(path, sizeof path, "/proc/%d/stat", static_cast<int>(id));
  const Descriptor file(open(path, O_RDONLY | O_CLOEXEC));
  if (!file) return false;
  char text[1024];
  const ssize_t size = read(file.Number(), text, sizeof text - 1);
  if (size <= 0) return false;
  text[size] = '\0';
  // The second field is the program's name, which may hold anything.
  const char* const name = std::strrchr(text, ')');
  char state = 0;
  int parent = 0;
  int session = 0;
  unsigned long long start = 0;
  if (name == nullptr ||
      std::sscanf(name + 1, " %c %d %*d %d %*d %*d %*u %*u %*u %*u %*u %*u %*u %*d %*d %*d %*d %*d %*d %llu", &state,
                  &parent, &session, &start) != 4) {
    return false;
  }
  entry = {id, parent, session, start, state == 'Z' || state == 'X'};
  return true;
}

std::vector<Entry> All() {
  std::vector<Entry> entries;
  DIR* const folder = opendir("/proc");
  if (folder == nullptr) return entries;
  try {
    while (const dirent* const name = readdir(folder)) {
      Entry entry;
      const int id = std::atoi(name->d_name);
      if (id > 0 && Read(id, entry)) entries.push_back(entry);
    }
  } catch (...) {
    closedir(folder);
    throw;
  }
  closedir(folder);
  return entries;
}

bool IsSame(const Entry& one, const Entry& other) { return one.id == other.id && one.start == other.start; }

// Returns the processes that belong to a program, also those that have ended and were not waited for: those in its
// session, and those that are in `known` or whose parent is, to which each that is found is added. The program itself,
// `leader`, is not among them.
std::vector<Entry> Tree(pid_t leader, std::vector<Entry>& known) {
  std::vector<Entry> all = All();
  std::vector<Entry> tree;
  // A number that is another process's by now tells nothing about that one's children.
  const auto isOther = [&](const Entry& one) {
    return one.id != leader && std::any_of(all.begin(), all.end(), [&](const Entry& entry) {
             return entry.id == one.id && entry.start != one.start;
           });
  };
  known.erase(std::remove_if(known.begin(), known.end(), isOther), known.end());
  const auto isOfTree = [&](const Entry& entry) {
    return entry.id != leader &&
           (entry.session == leader || std::any_of(known.begin(), known.end(), [&](const Entry& one) {
              return one.id == entry.parent || IsSame(one, entry);
            }));
  };
  for (bool found = true; found;) {
    const auto rest = std::partition(all.begin(), all.end(), isOfTree);
    found = rest != all.begin();
    for (auto entry = all.begin(); entry != rest; ++entry) {
      const auto isIt = [&](const Entry& one) { return IsSame(one, *entry); };
      if (std::none_of(known.begin(), known.end(), isIt)) known.push_back(*entry);
    }
    tree.insert(tree.end(), all.begin(), rest);
    all.erase(all.begin(), rest);
  }
  return tree;
}

bool IsZombieOfOurs(const Entry& entry) { return entry.hasEnded && entry.parent == getpid(); }

// Its descriptor reaches no other process: what was checked after it was opened still holds when it is used.
void KillOrReap(const Entry& entry) {
  const Descriptor process(static_cast<int>(syscall(SYS_pidfd_open, entry.id, 0)));
  Entry now;
  if (!Read(entry.id, now) || !IsSame(now, entry)) return;
  if (IsZombieOfOurs(now)) {
    siginfo_t end{};
    if (process) waitid(WaitForPidfd, static_cast<id_t>(process.Number()), &end, WEXITED | WNOHANG | __WALL);
  } else if (process) {
    syscall(SYS_pidfd_send_signal, process.Number(), SIGKILL, nullptr, 0);
  } else {
    kill(entry.id, SIGKILL);
  }
}

// Tells whether processes that lose their parent become children of this one.
bool GetsOrphans() {
  int isSubreaper = 0;
  return getpid() == 1 || (prctl(PR_GET_CHILD_SUBREAPER, &isSubreaper) == 0 && isSubreaper != 0);
}

bool HasEnded(int process) {
  pollfd entry{process, POLLIN, 0};
  return poll(&entry, 1, 0) > 0;
}

}  // namespace

void KillTree(pid_t leader, int process) noexcept {
  std::vector<Entry> known;
  std::vector<Entry> tree;
  try {
    known.push_back({leader, 0, 0, 0, false});
    tree = Tree(leader, known);  // before its parents end
  } catch (const std::exception&) {
    // No memory for a search: its group is used instead.
  }
  // While its descriptor still reaches it, which it does until somebody has waited for it, its number cannot be
  // another's: then what was found is its own. Where other code of the host has waited for it, the number may be that
  // of another process, and so may the session, even if its leader has ended again.
  if (syscall(SYS_pidfd_send_signal, process, SIGKILL, nullptr, 0) != 0 && errno == ESRCH) return;
  kill(-leader, SIGKILL);
  // What loses its parent becomes a child of a host that is process 1 or a subreaper, which knows nothing of it.
  const bool getsOrphans = GetsOrphans();
  const auto isLeft = [](const Entry& entry) { return !entry.hasEnded || IsZombieOfOurs(entry); };
  bool hasEnded = false;  // whether it had before the tree was searched: by its end others become this process's
  try {
    for (int round = 0; round < (getsOrphans ? MostRoundsWithPauses : MostRounds); ++round) {
      if (std::none_of(tree.begin(), tree.end(), isLeft) && (!getsOrphans || hasEnded)) break;
      for (const Entry& entry : tree) KillOrReap(entry);
      if (getsOrphans) poll(nullptr, 0, round);
      hasEnded = HasEnded(process);
      tree = Tree(leader, known);
    }
  } catch (const std::exception&) {
  }
}

}  // namespace torvan::java::detail
