#include "java/win32/Console.h"

#include <windows.h>

#include <atomic>
#include <mutex>

namespace torvan::java::detail {

namespace {

constexpr DWORD LongestWait = 1000;  // milliseconds

std::mutex s_mutex;
std::atomic<int> s_expected = 0;  // events of this process's own that have not come yet

// Never closed: a late event may still set it.
HANDLE Seen() {
  static const HANDLE s_seen = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  return s_seen;
}

// The event comes to this process, too, on a thread of its own, and would end it. Whose it is decides, and not whether
// it is still waited for: the system may be slow to start that thread.
BOOL WINAPI Swallow(DWORD event) {
  if (event != CTRL_C_EVENT) return FALSE;
  int expected = s_expected.load();
  do {
    if (expected == 0) return FALSE;
  } while (!s_expected.compare_exchange_weak(expected, expected - 1));
  SetEvent(Seen());
  return TRUE;
}

// Taking a console and leaving it again changes the standard handles of a process.
class StandardHandlesKept {
 public:
  StandardHandlesKept() {
    for (int i = 0; i < 3; ++i) m_handles[i] = GetStdHandle(Numbers[i]);
  }
  ~StandardHandlesKept() {
    for (int i = 0; i < 3; ++i) SetStdHandle(Numbers[i], m_handles[i]);
  }
  StandardHandlesKept(const StandardHandlesKept&) = delete;
  StandardHandlesKept& operator=(const StandardHandlesKept&) = delete;

 private:
  static constexpr DWORD Numbers[] = {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE};
  HANDLE m_handles[3];
};

}  // namespace

const char* SendControlC(DWORD processId) {
  const std::lock_guard<std::mutex> lock(s_mutex);
  DWORD first = 0;
  if (GetConsoleProcessList(&first, 1) != 0) {
    return "The program cannot be asked to stop: that takes its console, and this process has a console itself. Kill() "
           "ends it";
  }
  const StandardHandlesKept kept;
  FreeConsole();  // a process can be bound to a console that is gone, or to none at all
  if (Seen() == nullptr || AttachConsole(processId) == FALSE) {
    return "The program cannot be asked to stop: its console cannot be reached. Kill() ends it";
  }
  // The handler that was added last is called first: it goes before what the host has added meanwhile, and stays.
  SetConsoleCtrlHandler(Swallow, FALSE);
  SetConsoleCtrlHandler(Swallow, TRUE);
  ResetEvent(Seen());
  ++s_expected;
  const bool isSent = GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0) != FALSE;
  if (isSent) {
    WaitForSingleObject(Seen(), LongestWait);
  } else {
    --s_expected;
  }
  FreeConsole();
  return isSent ? nullptr : "The program cannot be asked to stop: the system refuses Ctrl+C. Kill() ends it";
}

}  // namespace torvan::java::detail
