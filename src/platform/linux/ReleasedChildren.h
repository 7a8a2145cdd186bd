// Reaps children whose handles were released, once they have ended.
#pragma once

#include <sys/types.h>

namespace torvan::platform {

// The list of those that still run is the kernel's own table of children, in which each is marked. So there is nothing
// to lock between threads and nothing to keep: a forked process begins with an empty table, and a mark goes with its
// child.
//
// The mark is a soft RLIMIT_LOCKS one below that of this process. Linux has not applied that limit since version
// 2.4.25: of all that a parent can write on a running child, it alone has no effect. Children that are started later
// inherit this process's own limit, and a marked child's own children are compared with that child's: neither pass for
// marked. (Only a process that adopts orphans, as init does, also reaps those that a marked child leaves.)

// Reaps a child of this process: now when it has ended, otherwise by the first ReapReleased after its end. One that
// cannot be marked, because it runs as another user, stays unreaped until this process ends. So do those that were
// marked before this process was marked itself.
void ReapOnceEnded(pid_t id);

// Reaps the children on the list that have ended.
void ReapReleased();

}  // namespace torvan::platform
