// Child processes.
#pragma once

#include "platform/System.h"

namespace torvan::platform {

// Each function answers the member of System it is named after. Handles stand for children started here and for no
// other process; null handles are answered with failure.
//
// A child is held by a process descriptor (pidfd). As on Windows, one that has ended is there to be asked, and its
// process id is given to no other, until its handle is released. One whose handle is released while it still runs is
// reaped by the first call of any of these functions after its end: neither a signal handler nor a thread of our own is
// needed for that, which the host would notice, but a host that makes no further call keeps the remains (one process
// table entry and one descriptor for each) until it ends. A host that reaps children it did not start, or ignores
// SIGCHLD, takes the exit codes away; asking for one then fails.
//
// Several threads may call at once, for one handle only to wait. Nothing is locked: all that they share, the system
// keeps.

// Starts the program with these arguments in its own search path's folders, or where its path points.
// The child has the standard descriptors only (all that are not closed on execution with `inheritDescriptors`), no
// signal blocked and none ignored. False when it cannot be started, or the system has no process descriptors.
bool StartChild(char* const* arguments, bool inheritDescriptors, StartedProcess* started);
unsigned int WaitForChild(ProcessHandle handle, unsigned int milliseconds);
// The code given to EndChild, the child's own, or 128 and the number of the signal that ended it.
bool ExitCodeOfChild(ProcessHandle handle, unsigned int* exitCode);
bool EndChild(ProcessHandle handle, unsigned int exitCode);
// ControlC sends SIGINT, ControlBreak SIGQUIT. False when no child of this process that runs has this process id.
bool SignalChild(unsigned int event, unsigned int processId);
void ReleaseChild(ProcessHandle handle);

}  // namespace torvan::platform
