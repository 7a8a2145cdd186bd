#include "jvmlauncher/Resources.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>
// After <windows.h>, which it needs.
#include <psapi.h>

#include <cstdint>

namespace tests {

namespace {

// Where the system does not count handles (it answers 0), the number of a new handle is the count: the lowest free one
// is used.
long CountHandles() {
  DWORD count = 0;
  if (GetProcessHandleCount(GetCurrentProcess(), &count) && count != 0) return static_cast<long>(count);
  const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  CloseHandle(event);
  return static_cast<long>(reinterpret_cast<std::intptr_t>(event) / 4);
}

}  // namespace

Resources MeasureResources() {
  PROCESS_MEMORY_COUNTERS counters{};
  counters.cb = sizeof(counters);
  GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters));
  return {CountHandles(), 0, static_cast<long>(counters.PagefileUsage / 1024)};
}

bool MakePipe(int (&ends)[2]) { return _pipe(ends, 16, _O_BINARY) == 0; }

void CloseEnd(int end) { _close(end); }

bool IsAtItsEnd(int readingEnd) {
  char byte = 0;
  return _read(readingEnd, &byte, 1) == 0;
}

}  // namespace tests
