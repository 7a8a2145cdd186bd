#include "java/processes/ThisProcess.h"

#include <windows.h>
// After <windows.h>, which they need.
#include <psapi.h>
#include <tlhelp32.h>

namespace tests {
namespace {

// The system lists a thread until its last handle is closed, and for a moment after it has been joined.
bool Ends(DWORD id) {
  const HANDLE thread = OpenThread(SYNCHRONIZE, FALSE, id);
  const bool ends = thread == nullptr || WaitForSingleObject(thread, 0) == WAIT_OBJECT_0;
  if (thread != nullptr) CloseHandle(thread);
  return ends;
}

std::size_t Threads() {
  const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
  THREADENTRY32 entry{};
  entry.dwSize = sizeof entry;
  std::size_t count = 0;
  for (BOOL more = Thread32First(snapshot, &entry); more != FALSE; more = Thread32Next(snapshot, &entry)) {
    if (entry.th32OwnerProcessID == GetCurrentProcessId() && !Ends(entry.th32ThreadID)) ++count;
  }
  CloseHandle(snapshot);
  return count;
}

}  // namespace

Held HeldNow() {
  DWORD handles = 0;
  GetProcessHandleCount(GetCurrentProcess(), &handles);
  return {handles, Threads(), 0};
}

std::size_t MemoryNow() {
  PROCESS_MEMORY_COUNTERS counters{};
  GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  return counters.PagefileUsage;
}

std::filesystem::path OwnProgram() {
  wchar_t path[MAX_PATH];
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  return path;
}

unsigned long OwnId() { return GetCurrentProcessId(); }

namespace {

DWORD NumberOf(int stream) { return stream == 1 ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE; }

}  // namespace

OwnStreamToFile::OwnStreamToFile(int stream, const std::filesystem::path& file)
    : m_stream(stream), m_before(reinterpret_cast<std::intptr_t>(GetStdHandle(NumberOf(stream)))) {
  SetStdHandle(NumberOf(stream), CreateFileW(file.native().c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                             nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
}

OwnStreamToFile::~OwnStreamToFile() {
  CloseHandle(GetStdHandle(NumberOf(m_stream)));
  SetStdHandle(NumberOf(m_stream), reinterpret_cast<HANDLE>(m_before));
}

void UseTemporaryFolder(const std::filesystem::path& folder) {
  for (const wchar_t* name : {L"TMP", L"TEMP"}) SetEnvironmentVariableW(name, folder.native().c_str());
}

bool Runs(unsigned long id) {
  const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, id);
  if (process == nullptr) return false;
  const bool runs = WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
  CloseHandle(process);
  return runs;
}

void KillOther(unsigned long id) {
  const HANDLE process = OpenProcess(PROCESS_TERMINATE, FALSE, id);
  TerminateProcess(process, 1);
  CloseHandle(process);
}

}  // namespace tests
