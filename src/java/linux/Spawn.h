// Making a child process.
#pragma once

#include <sys/types.h>

#include "java/linux/Descriptor.h"
#include "java/processes/StartPlan.h"

namespace torvan::java::detail {

struct Spawned {
  pid_t id = 0;
  Descriptor process;  // a process descriptor (pidfd); none for one that is apart
};

// Starts the plan's program with these as its standard descriptors, and no other; no signal is blocked or ignored in
// it. It leads a new session and process group. One that is `apart` is no child of this process. Nothing of this
// process runs in between: no handler of a fork, no handler of a signal. Throws a StartFailure that says which step
// failed, or TooLong.
Spawned Spawn(const StartPlan& plan, const Descriptor (&standard)[StreamCount], bool apart);

}  // namespace torvan::java::detail
