#include "java/processes/Surroundings.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <optional>
#include <system_error>

#include "java/processes/Environment.h"
#include "java/win32/Handle.h"

namespace torvan::java::detail {

const char* const JavaProgramName = "java.exe";

std::string ReasonOf(unsigned long error) {
  wchar_t text[512];
  DWORD size = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0, text,
                              static_cast<DWORD>(std::size(text)), nullptr);
  while (size > 0 && (text[size - 1] <= L' ' || text[size - 1] == L'.')) --size;
  return size > 0 ? ToText(std::wstring(text, size)) : "error " + std::to_string(error);
}

unsigned long OwnProcessId() noexcept { return GetCurrentProcessId(); }

std::vector<NativeText> OwnEnvironment() {
  std::vector<NativeText> environment;
  struct Free {
    void operator()(wchar_t* strings) const { FreeEnvironmentStringsW(strings); }
  };
  const std::unique_ptr<wchar_t, Free> all(GetEnvironmentStringsW());
  for (const wchar_t* variable = all.get(); variable != nullptr && *variable != L'\0';
       variable += environment.back().size() + 1) {
    environment.emplace_back(variable);
  }
  return environment;
}

bool IsSameVariable(const NativeText& one, const NativeText& other) {
  const auto size = static_cast<int>(one.find(L'=') + 1);
  return other.find(L'=') + 1 == static_cast<std::size_t>(size) &&
         CompareStringOrdinal(one.c_str(), size, other.c_str(), size, TRUE) == CSTR_EQUAL;
}

// Without it a program cannot load the system's own libraries for networks and random numbers.
void CompleteEnvironment(std::vector<NativeText>& environment, const std::vector<EnvironmentChange>& changes) {
  const auto isIt = [](const NativeText& variable) { return IsSameVariable(L"SystemRoot=", variable); };
  for (const EnvironmentChange& change : changes) {
    if (isIt(ToNative(change.name + "="))) return;
  }
  wchar_t folder[MAX_PATH];
  if (std::none_of(environment.begin(), environment.end(), isIt) && GetWindowsDirectoryW(folder, MAX_PATH) != 0) {
    environment.push_back(std::wstring(L"SystemRoot=") + folder);
  }
}

namespace {

// In the system's code page; nothing for a text with characters that it lacks.
std::optional<std::string> InCodePage(const NativeText& text) {
  const bool isUtf8 = GetACP() == CP_UTF8;
  BOOL isLost = FALSE;
  const DWORD flags = isUtf8 ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS;
  BOOL* const lost = isUtf8 ? nullptr : &isLost;
  const auto size = static_cast<int>(text.size());
  std::string bytes(3 * text.size(), '\0');
  const int written = WideCharToMultiByte(CP_ACP, flags, text.data(), size, bytes.data(),
                                          static_cast<int>(bytes.size()), nullptr, lost);
  if (isLost != FALSE || (written == 0 && size > 0)) return std::nullopt;
  bytes.resize(static_cast<std::size_t>(written));
  return bytes;
}

[[noreturn]] void FailToWrite(unsigned int line, const std::string& place, const std::string& reason) {
  throw StartFailure("java/win32/Surroundings", line, "Could not write the argument file" + place + ": " + reason);
}

// `size` is what the system returned: 0, or more than there is room for, where it leaves no error.
[[noreturn]] void FailWithoutFolder(unsigned int line, DWORD size) {
  const DWORD error = size == 0 ? GetLastError() : ERROR_FILENAME_EXCED_RANGE;
  FailToWrite(line, "", "no folder for temporary files: " + ReasonOf(error));
}

// Absolute, with a backslash at its end, and in words that java.exe can read from its command line.
std::wstring TemporaryFolder() {
  constexpr DWORD Room = 32768;
  std::wstring folder(Room, L'\0');
  const DWORD size = GetTempPathW(Room, folder.data());
  if (size == 0 || size >= Room) FailWithoutFolder(__LINE__, size);
  folder.resize(size);
  std::wstring full(Room, L'\0');  // TEMP may be a relative path
  const DWORD fullSize = GetFullPathNameW(folder.c_str(), Room, full.data(), nullptr);
  if (fullSize == 0 || fullSize >= Room) FailWithoutFolder(__LINE__, fullSize);
  full.resize(fullSize);
  if (InCodePage(full)) return full;
  std::wstring plain(Room, L'\0');
  plain.resize(GetShortPathNameW(full.c_str(), plain.data(), Room));
  if (!plain.empty() && InCodePage(plain)) return plain;
  const std::string reason = "java.exe reads its name in code page " + std::to_string(GetACP()) +
                             ", which lacks characters of it: set TEMP to another folder";
  FailToWrite(__LINE__, " in \"" + ToText(full) + "\"", reason);
}

}  // namespace

std::string ToArgumentFileBytes(const NativeText& argument) {
  if (std::optional<std::string> bytes = InCodePage(argument)) return *std::move(bytes);
  const std::string text = "\"" + ToText(argument) +
                           "\" cannot be passed to java.exe, which reads its command line in code page " +
                           std::to_string(GetACP()) + ": pass it in a file, a variable or the input";
  throw Misuse("java/win32/Surroundings", __LINE__, text);
}

std::thread StartQuietThread(std::function<void()> run) {
  try {
    return std::thread(std::move(run));
  } catch (const std::system_error& failure) {
    throw StartFailure("java/win32/Surroundings", __LINE__,
                       "Could not start a thread for the program: " + ReasonOf(failure.code()));
  }
}

TemporaryFile::TemporaryFile(const std::string& bytes) {
  static std::atomic<unsigned long> s_count = 0;
  m_path = TemporaryFolder() + ToNative("java-arguments-" + std::to_string(GetCurrentProcessId()) + "-" +
                                        std::to_string(GetTickCount64()) + "-" + std::to_string(++s_count));
  const int error = Write(bytes);
  if (error != 0) {
    FailToWrite(__LINE__, " \"" + ToText(m_path) + "\"", ReasonOf(static_cast<unsigned long>(error)));
  }
}

int TemporaryFile::Write(const std::string& bytes) noexcept {
  WindowsHandle file(
      CreateFileW(m_path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_TEMPORARY, nullptr));
  if (!file) return static_cast<int>(GetLastError());
  DWORD written = 0;
  const BOOL isWritten = WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  if (isWritten != FALSE && written == bytes.size()) return 0;
  const DWORD error = isWritten != FALSE ? ERROR_DISK_FULL : GetLastError();
  file.Close();
  DeleteFileW(m_path.c_str());
  return static_cast<int>(error);
}

TemporaryFile::~TemporaryFile() { DeleteFileW(m_path.c_str()); }

}  // namespace torvan::java::detail
