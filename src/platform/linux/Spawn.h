// Starts programs.
#pragma once

#include <sys/types.h>

namespace torvan::platform {

// Starts the program with these arguments, searched for as a shell does, as a child of this process; 0 when it cannot
// be started. It blocks and ignores no signal. Of this process's descriptors it gets the standard ones, /dev/null
// for one that is closed; with `inheritDescriptors` also all others that are not closed on execution.
pid_t Spawn(char* const* arguments, bool inheritDescriptors);

}  // namespace torvan::platform
