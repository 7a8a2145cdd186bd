#include "java/win32/Console.h"

#include <mutex>

#include "java/win32/Handle.h"

namespace torvan::java::detail {

namespace {

constexpr DWORD LongestWait = 1000;  // milliseconds

std::mutex s_mutex;
HANDLE s_seen = nullptr;

// The event comes to this process, too, on a thread of its own: it would end it.
BOOL WINAPI Swallow(DWORD event) {
  if (event != CTRL_C_EVENT) return FALSE;
  SetEvent(s_seen);
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
  const WindowsHandle seen(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  FreeConsole();  // a process can be bound to a console that is gone, or (under Wine) to none at all
  if (!seen || AttachConsole(processId) == FALSE) {
    return "The program cannot be asked to stop: its console cannot be reached. Kill() ends it";
  }
  s_seen = seen.Get();
  SetConsoleCtrlHandler(Swallow, TRUE);
  const bool isSent = GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0) != FALSE;
  if (isSent) WaitForSingleObject(seen.Get(), LongestWait);
  FreeConsole();
  SetConsoleCtrlHandler(Swallow, FALSE);
  return isSent ? nullptr : "The program cannot be asked to stop: the system refuses Ctrl+C. Kill() ends it";
}

}  // namespace torvan::java::detail
