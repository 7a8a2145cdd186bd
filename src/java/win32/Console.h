// Ctrl+C for a program in another console.
#pragma once

#include <windows.h>

namespace torvan::java::detail {

// Sends it to all programs of the console that the process `processId` has. Returns why that cannot be, or null.
// A process has one console at a time, so one that has none takes the program's for a moment; its own handlers see
// nothing of that.
const char* SendControlC(DWORD processId);

}  // namespace torvan::java::detail
