#include "java/linux/Tree.h"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/syscall.h>

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

struct Entry {
  pid_t id;
  pid_t parent;
  pid_t session;
  unsigned long long start;  // an id alone may be another process by now
};

// Returns false when the process is gone, or has ended and only waits for its parent.
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
  entry = {id, parent, session, start};
  return state != 'Z' && state != 'X';
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

// Returns the running processes that belong to a program: those in its session, and those whose parent is in `ids`, to
// which the id of each that is found is added. The program itself, `leader`, is not among them.
std::vector<Entry> Tree(pid_t leader, std::vector<pid_t>& ids) {
  std::vector<Entry> all = All();
  std::vector<Entry> tree;
  const auto isOfTree = [&](const Entry& entry) {
    return entry.id != leader &&
           (entry.session == leader || std::find(ids.begin(), ids.end(), entry.parent) != ids.end());
  };
  for (bool found = true; found;) {
    const auto rest = std::partition(all.begin(), all.end(), isOfTree);
    found = rest != all.begin();
    for (auto entry = all.begin(); entry != rest; ++entry) ids.push_back(entry->id);
    tree.insert(tree.end(), all.begin(), rest);
    all.erase(all.begin(), rest);
  }
  return tree;
}

void Kill(const Entry& entry) {
  const Descriptor process(static_cast<int>(syscall(SYS_pidfd_open, entry.id, 0)));
  Entry now;
  if (!Read(entry.id, now) || now.start != entry.start) return;
  if (process) {
    syscall(SYS_pidfd_send_signal, process.Number(), SIGKILL, nullptr, 0);
  } else {
    kill(entry.id, SIGKILL);
  }
}

}  // namespace

void KillTree(pid_t leader, int process) noexcept {
  std::vector<pid_t> ids;
  std::vector<Entry> tree;
  try {
    ids.push_back(leader);
    tree = Tree(leader, ids);  // before its parents end
  } catch (const std::exception&) {
    // No memory for a search: its group is used instead.
  }
  // While its descriptor still reaches it, which it does until somebody has waited for it, its number cannot be
  // another's: then what was found is its own. Where other code of the host has waited for it, the number may be that
  // of another process, and so may the session, even if its leader has ended again.
  if (syscall(SYS_pidfd_send_signal, process, SIGKILL, nullptr, 0) != 0 && errno == ESRCH) return;
  kill(-leader, SIGKILL);
  try {
    for (int round = 0; !tree.empty() && round < MostRounds; ++round) {
      for (const Entry& entry : tree) Kill(entry);
      tree = Tree(leader, ids);
    }
  } catch (const std::exception&) {
  }
}

}  // namespace torvan::java::detail
