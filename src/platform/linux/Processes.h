// Child processes.
#pragma once

#include "platform/System.h"

namespace torvan::platform {

// Each function implements the member of System it is named after. A handle refers to a child that was started here;
// a null handle is a failure.
//
// As on Windows, a child that has ended is there to be asked, and its process id is given to no other, until its handle
// is released: it is not reaped before. One whose handle is released while it runs is reaped by the first call of any
// of these functions after its end (see ReleasedChildren.h).
//
// Between calls nothing is kept but the child's number: no descriptor, thread, signal handler or static object. So a
// host may close every descriptor, and fork. The children stay those of the process that started them: in a forked
// process a copied handle is a failure, and releasing it does nothing to the child.
//
// A host that reaps children that it did not start, or ignores SIGCHLD, takes the exit codes away: the child has ended
// then, and asking for its exit code fails. Its number may go to another process. A handle knows by the time at which
// a process started whether it is still the same; where /proc is not mounted, another child of the host with that
// number is taken for it.
//
// Several threads may call at once, but with the same handle only to wait. There are no locks: all shared state is the
// system's.

// Starts a program as Spawn does. False when it cannot be started, or the system has no process descriptors (pidfd).
bool StartChild(char* const* arguments, bool inheritDescriptors, StartedProcess* started);
unsigned int WaitForChild(ProcessHandle handle, unsigned int milliseconds);
// The code given to EndChild, the child's own, or 128 and the number of the signal that ended it.
bool ExitCodeOfChild(ProcessHandle handle, unsigned int* exitCode);
bool EndChild(ProcessHandle handle, unsigned int exitCode);
// ControlC sends SIGINT, ControlBreak SIGQUIT. False when no child of this process that runs has this process id. There
// is no handle to compare with: of a child that the host reaped, another child of the host may have the number.
bool SignalChild(unsigned int event, unsigned int processId);
void ReleaseChild(ProcessHandle handle);

}  // namespace torvan::platform
