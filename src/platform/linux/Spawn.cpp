#include "platform/linux/Spawn.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <unistd.h>

namespace torvan::platform {
namespace {

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
    // The first files that a child opens would otherwise become its standard streams, and be written into.
    for (int standard = STDIN_FILENO; standard <= STDERR_FILENO; ++standard) {
      if (fcntl(standard, F_GETFD) >= 0) continue;
      m_good &= posix_spawn_file_actions_addopen(&actions, standard, "/dev/null", O_RDWR, 0) == 0;
    }
    // A host's libraries open descriptors that are not closed on execution; closing them in the child is up to us.
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

}  // namespace

pid_t Spawn(char* const* arguments, bool inheritDescriptors) {
  const SpawnSettings settings(inheritDescriptors);
  pid_t id = 0;
  const bool isStarted = settings.IsGood() && posix_spawnp(&id, arguments[0], &settings.actions, &settings.attributes,
                                                           arguments, environ) == 0;
  return isStarted ? id : 0;
}

}  // namespace torvan::platform
