// All that a program has started.
#pragma once

#include <sys/types.h>

namespace torvan::java::detail {

// Kills a process that leads a session, all that is in this session, and all that descends from it.
// Descendants are found by their parents' ids, also in other sessions, unless their parent has ended before.
void KillTree(pid_t leader, int process) noexcept;

}  // namespace torvan::java::detail
