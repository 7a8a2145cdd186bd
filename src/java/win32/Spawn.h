// Making a child process.
#pragma once

#include "java/processes/StartPlan.h"
#include "java/win32/Handle.h"

namespace torvan::java::detail {

struct Spawned {
  WindowsHandle process;
  DWORD id = 0;
  bool hasOwnConsole = false;
};

// Starts the plan's program with these as its standard handles, and no other handle. It has its own console,
// without a window, unless one of the handles is this process's console. With a job it is in it from the start;
// without, it leaves the job of this process where that allows it. Throws a StartFailure that says which step failed,
// or TooLong.
Spawned Spawn(const StartPlan& plan, const WindowsHandle (&standard)[StreamCount], HANDLE job);

}  // namespace torvan::java::detail
