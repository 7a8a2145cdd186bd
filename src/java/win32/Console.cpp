#include "java/win32/Console.h"

#include <windows.h>

#include <mutex>

namespace torvan::java::detail {

namespace {

constexpr DWORD LongestWait = 1000;                     // in milliseconds
constexpr ULONGLONG LongestDelay = 30ULL * 10'000'000;  // 30 s, in units of 100 ns

std::mutex s_sending;

// Never closed: a late event may still set it.
HANDLE Seen() {
  static const HANDLE s_seen = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  return s_seen;
}

// A process with a console can get Ctrl+C from somebody else.
bool HasConsole() {
  DWORD first = 0;
  return GetConsoleProcessList(&first, 1) != 0;
}

// Returns for how long the machine has been awake. Sleep does not count: no event is delivered then.
ULONGLONG AwakeTime() {
  ULONGLONG time = 0;
  QueryUnbiasedInterruptTime(&time);
  return time;
}

// Counts the events that this process has sent and that have not come back to it. An event that is not taken ends the
// process, so while it has no console, and no other Ctrl+C can come, each is expected for ever: the system may be slow
// to deliver it, this process may have been suspended meanwhile, and while it ignores Ctrl+C none is delivered at all.
// Once the process has a console, an event that is late is no longer expected, so that somebody else's Ctrl+C is not
// taken for it.
class OwnEvents {
 public:
  void Expect() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    ++m_count;
    m_sentAt = AwakeTime();
  }
  // Returns whether one was expected.
  bool Take() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (HasConsole() && AwakeTime() - m_sentAt > LongestDelay) m_count = 0;
    if (m_count == 0) return false;
    --m_count;
    return true;
  }

 private:
  std::mutex m_mutex;
  int m_count = 0;
  ULONGLONG m_sentAt = 0;  // the last one
};
OwnEvents s_ownEvents;

// An event comes to this process, too, on a thread that the system starts, and would end it.
BOOL WINAPI Swallow(DWORD event) {
  if (event != CTRL_C_EVENT || !s_ownEvents.Take()) return FALSE;
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
  const std::lock_guard<std::mutex> lock(s_sending);
  if (HasConsole()) {
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
  const bool isReady = SetConsoleCtrlHandler(Swallow, TRUE) != FALSE;
  ResetEvent(Seen());
  s_ownEvents.Expect();
  const bool isSent = isReady && GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0) != FALSE;
  if (isSent) {
    WaitForSingleObject(Seen(), LongestWait);
  } else {
    s_ownEvents.Take();
  }
  FreeConsole();
  return isSent ? nullptr : "The program cannot be asked to stop: the system refuses Ctrl+C. Kill() ends it";
}

}  // namespace torvan::java::detail
