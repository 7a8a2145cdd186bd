#include "java/processes/probe/Steps.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>
// After <windows.h>, which it needs.
#include <shellapi.h>

#include <cstdint>
#include <cstdio>
#include <cwchar>
#include <filesystem>

namespace tests {

namespace {

std::wstring FromCodePage(const std::string& text) {
  std::wstring wide(text.size(), L'\0');
  const auto size = static_cast<int>(text.size());
  wide.resize(static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), size)));
  return wide;
}

std::string Utf8(const wchar_t* text) {
  std::string utf8(static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr)),
                   '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8.data(), static_cast<int>(utf8.size()), nullptr, nullptr);
  utf8.pop_back();
  return utf8;
}

void Handle() {
  const auto handle = reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(NextNumber()));
  DWORD flags = 0;
  Put(GetHandleInformation(handle, &flags) != 0 ? "there" : "not there");
}

// The job has no limits: whatever ends the process in it comes from outside.
void Job() {
  const unsigned long id = Again("sleep " + std::to_string(NextNumber()), false);
  const HANDLE job = CreateJobObjectW(nullptr, nullptr);
  const HANDLE process = OpenProcess(PROCESS_ALL_ACCESS, FALSE, id);
  Put(AssignProcessToJobObject(job, process) != FALSE ? std::to_string(id) + "\n" : "refused\n");
  CloseHandle(process);
}

int g_code = -1;
BOOL WINAPI OnControl(DWORD event) {
  if (event != CTRL_C_EVENT) return FALSE;
  if (g_code >= 0) ExitProcess(static_cast<UINT>(g_code));
  return TRUE;
}

}  // namespace

Steps SystemSteps() { return {{"handle", Handle}, {"job", Job}}; }

std::vector<std::string> AllArguments(int, char**) {
  int count = 0;
  wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> all;
  for (int i = 0; i < count; ++i) all.push_back(Utf8(arguments[i]));
  LocalFree(arguments);
  return all;
}

std::vector<std::string> AllVariables() {
  std::vector<std::string> all;
  wchar_t* const variables = GetEnvironmentStringsW();
  for (const wchar_t* variable = variables; *variable != L'\0'; variable += std::wcslen(variable) + 1) {
    all.push_back(Utf8(variable));
  }
  FreeEnvironmentStringsW(variables);
  return all;
}

std::string FromSystem(const std::string& bytes) { return Utf8(FromCodePage(bytes).c_str()); }

unsigned long Again(const std::string& steps, bool apart) {
  std::wstring line =
      L"\"" + std::filesystem::u8path(OwnPath()).wstring() + L"\" Probe " + std::filesystem::u8path(steps).wstring();
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
  start.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
  start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  PROCESS_INFORMATION process{};
  CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE,
                 apart ? CREATE_NEW_PROCESS_GROUP | DETACHED_PROCESS : 0UL, nullptr, nullptr, &start, &process);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return process.dwProcessId;
}

void IgnoreRequestsToStop() { SetConsoleCtrlHandler(OnControl, TRUE); }

void ExitWhenAskedToStop(int code) {
  g_code = code;
  SetConsoleCtrlHandler(OnControl, TRUE);
}

void Raise(int) { RaiseException(EXCEPTION_ACCESS_VIOLATION, 0, 0, nullptr); }

unsigned long OwnId() { return GetCurrentProcessId(); }

void UseBinaryStreams() {
  for (std::FILE* stream : {stdin, stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
}

std::size_t ReadInput(char* piece, std::size_t size) {
  const int count = _read(_fileno(stdin), piece, static_cast<unsigned int>(size));
  return count > 0 ? static_cast<std::size_t>(count) : 0;
}

}  // namespace tests
