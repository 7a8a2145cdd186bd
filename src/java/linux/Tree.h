// All that a program has started.
#pragma once

#include <sys/types.h>

namespace torvan::java::detail {

// Kills a process that leads a session, all that is in this session, and all that descends from it.
// Descendants are found by their parents' ids, also in other sessions, unless their parent has ended before. Those that
// become children of this process, which is process 1 or a subreaper then, are reaped as well; the leader is not. Kills
// nothing when the process has ended and was waited for: its number may be another's. `process` is its descriptor.
void KillTree(pid_t leader, int process) noexcept;

}  // namespace torvan::java::detail
