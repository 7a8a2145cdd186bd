#include "java/win32/Spawn.h"

#include <algorithm>
#include <memory>
#include <string>

#include "java/processes/Quoting.h"
#include "java/processes/Surroundings.h"

namespace torvan::java::detail {

namespace {

// PROC_THREAD_ATTRIBUTE_JOB_LIST, which MinGW's headers define only for programs that need Windows 10.
constexpr DWORD_PTR AttributeJobs = 0x0002000D;

constexpr std::size_t LongestLine = 32766;  // units, without the zero

// Units of a path, without the zero. A folder gets a backslash at its end.
constexpr std::size_t LongestProgram = MAX_PATH - 1;
constexpr std::size_t LongestFolder = MAX_PATH - 2;

// Windows has several errors for a path that is too long, and most say that it is not there.
std::string ReasonFor(const std::filesystem::path& path, std::size_t longest, DWORD error) {
  const std::size_t size = path.native().size();
  if (size <= longest) return ReasonOf(error);
  return ReasonOf(error) + " (Windows takes " + std::to_string(longest) + " characters, and the path has " +
         std::to_string(size) + ")";
}

[[noreturn]] void Fail(unsigned int line, const StartPlan& plan, const std::string& step, DWORD error) {
  throw StartFailure("java/win32/Spawn", line, CannotStart(plan, step, ReasonOf(error)));
}

[[noreturn]] void FailInFolder(unsigned int line, const StartPlan& plan) {
  const std::string reason = ReasonFor(plan.folder, LongestFolder, ERROR_DIRECTORY);
  const std::string step = "change to the folder \"" + ToText(plan.folder) + "\"";
  throw StartFailure("java/win32/Spawn", line, CannotStart(plan, step, reason));
}

template <class Failure = StartFailure>
[[noreturn]] void FailToRun(unsigned int line, const StartPlan& plan, DWORD error) {
  const std::string reason = ReasonFor(plan.program, LongestProgram, error);
  throw Failure("java/win32/Spawn", line, "Could not run \"" + ToText(plan.program) + "\": " + reason);
}

std::wstring LineOf(const StartPlan& plan) {
  std::wstring line;
  AppendQuoted(line, std::wstring(plan.program.native()));
  for (const std::wstring& argument : plan.arguments) {
    ToArgumentFileBytes(argument);  // java.exe reads its line in the same code page
    AppendQuoted(line, argument);
  }
  if (line.size() > LongestLine) FailToRun<TooLong>(__LINE__, plan, ERROR_FILENAME_EXCED_RANGE);
  return line;
}

// Sorted as the system expects it, each ended by a zero, and one more at the end of all.
std::wstring BlockOf(std::vector<std::wstring> environment) {
  std::stable_sort(environment.begin(), environment.end(), [](const std::wstring& one, const std::wstring& other) {
    return CompareStringOrdinal(one.c_str(), static_cast<int>(one.size()), other.c_str(),
                                static_cast<int>(other.size()), TRUE) == CSTR_LESS_THAN;
  });
  std::wstring block;
  for (const std::wstring& variable : environment) block.append(variable) += L'\0';
  if (block.empty()) block += L'\0';
  return block += L'\0';
}

// What the program gets beside its command line.
class Attributes {
 public:
  Attributes(const StartPlan& plan, HANDLE* handles, HANDLE* job) {
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, 2, 0, &size);
    m_bytes.reset(new char[size]);
    if (InitializeProcThreadAttributeList(Get(), 2, 0, &size) == FALSE) {
      Fail(__LINE__, plan, "list the handles", GetLastError());
    }
    const bool isListed = UpdateProcThreadAttribute(Get(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles,
                                                    StreamCount * sizeof(HANDLE), nullptr, nullptr) != FALSE &&
                          (*job == nullptr || UpdateProcThreadAttribute(Get(), 0, AttributeJobs, job, sizeof(HANDLE),
                                                                        nullptr, nullptr) != FALSE);
    if (isListed) return;
    const DWORD error = GetLastError();
    DeleteProcThreadAttributeList(Get());
    Fail(__LINE__, plan, "list the handles", error);
  }
  ~Attributes() { DeleteProcThreadAttributeList(Get()); }
  Attributes(const Attributes&) = delete;
  Attributes& operator=(const Attributes&) = delete;

  LPPROC_THREAD_ATTRIBUTE_LIST Get() const noexcept {
    return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(m_bytes.get());
  }

 private:
  std::unique_ptr<char[]> m_bytes;
};

bool IsConsole(HANDLE handle) {
  DWORD mode = 0;
  return GetConsoleMode(handle, &mode) != FALSE;
}

}  // namespace

Spawned Spawn(const StartPlan& plan, const WindowsHandle (&standard)[StreamCount], HANDLE job) {
  const std::wstring line = LineOf(plan);
  std::wstring block = BlockOf(plan.environment);
  const std::wstring program = plan.program.native();
  const std::wstring folder = plan.folder.native();
  if (!folder.empty()) {
    const DWORD attributes = GetFileAttributesW(folder.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
      FailInFolder(__LINE__, plan);
    }
  }

  HANDLE handles[StreamCount];
  Spawned spawned;
  spawned.hasOwnConsole = true;
  for (int i = 0; i < StreamCount; ++i) {
    handles[i] = standard[i].Get();
    spawned.hasOwnConsole &= !IsConsole(handles[i]);
  }
  const Attributes attributes(plan, handles, &job);
  STARTUPINFOEXW start{};
  start.StartupInfo.cb = sizeof start;
  start.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
  start.StartupInfo.hStdInput = handles[0];
  start.StartupInfo.hStdOutput = handles[1];
  start.StartupInfo.hStdError = handles[2];
  start.lpAttributeList = attributes.Get();

  const DWORD flags =
      EXTENDED_STARTUPINFO_PRESENT | CREATE_UNICODE_ENVIRONMENT | (spawned.hasOwnConsole ? CREATE_NO_WINDOW : 0);
  PROCESS_INFORMATION process{};
  const auto create = [&](DWORD more) {
    std::wstring ownLine = line;  // the system may write into it
    return CreateProcessW(program.c_str(), ownLine.data(), nullptr, nullptr, TRUE, flags | more, block.data(),
                          folder.empty() ? nullptr : folder.c_str(), &start.StartupInfo, &process) != FALSE;
  };
  // Other starts of this process must not inherit them: they can be inherited for this moment only.
  for (HANDLE handle : handles) {
    const BOOL isPassedOn = SetHandleInformation(handle, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
    if (isPassedOn == FALSE) Fail(__LINE__, plan, "hand over the standard streams", GetLastError());
  }
  const bool isApart = job == nullptr;
  bool isCreated = create(isApart ? CREATE_BREAKAWAY_FROM_JOB : 0);
  DWORD error = GetLastError();
  if (!isCreated && isApart && error == ERROR_ACCESS_DENIED) {
    isCreated = create(0);
    error = GetLastError();
  }
  for (HANDLE handle : handles) SetHandleInformation(handle, HANDLE_FLAG_INHERIT, 0);
  if (!isCreated && error == ERROR_DIRECTORY && !folder.empty()) FailInFolder(__LINE__, plan);
  // The line is short enough: a name that is too long is that of the program.
  if (!isCreated) FailToRun(__LINE__, plan, error);
  CloseHandle(process.hThread);
  spawned.process = WindowsHandle(process.hProcess);
  spawned.id = process.dwProcessId;
  return spawned;
}

}  // namespace torvan::java::detail
