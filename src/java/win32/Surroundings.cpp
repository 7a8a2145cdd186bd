#include "java/processes/Surroundings.h"

#include <windows.h>

#include <atomic>
#include <memory>
#include <system_error>

#include "java/processes/Environment.h"
#include "java/win32/Handle.h"

namespace torvan::java::detail {

const char* const JavaProgramName = "java.exe";
const NativeText::value_type PathListSeparator = L';';

std::string ReasonOf(unsigned long error) {
  wchar_t text[512];
  DWORD size = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0, text,
                              static_cast<DWORD>(std::size(text)), nullptr);
  while (size > 0 && (text[size - 1] == L'\n' || text[size - 1] == L'\r' || text[size - 1] == L' ')) --size;
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
void CompleteEnvironment(std::vector<NativeText>& environment, const std::vector<EnvironmentChange>&) {
  const auto isSet = [](const std::vector<NativeText>& variables) {
    for (const NativeText& variable : variables) {
      if (IsSameVariable(L"SystemRoot=", variable)) return true;
    }
    return false;
  };
  wchar_t folder[MAX_PATH];
  if (!isSet(environment) && GetWindowsDirectoryW(folder, MAX_PATH) != 0) {
    environment.push_back(std::wstring(L"SystemRoot=") + folder);
  }
}

std::string ToArgumentFileBytes(const NativeText& argument) {
  const bool isUtf8 = GetACP() == CP_UTF8;
  BOOL isLost = FALSE;
  const DWORD flags = isUtf8 ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS;
  BOOL* const lost = isUtf8 ? nullptr : &isLost;
  const auto size = static_cast<int>(argument.size());
  std::string bytes(3 * argument.size(), '\0');
  const int written = WideCharToMultiByte(CP_ACP, flags, argument.data(), size, bytes.data(),
                                          static_cast<int>(bytes.size()), nullptr, lost);
  if (isLost != FALSE || (written == 0 && size > 0)) {
    throw Misuse("java/win32/Surroundings", __LINE__,
                 "\"" + ToText(argument) +
                     "\" cannot be passed to java.exe, which reads its command line in code page " +
                     std::to_string(GetACP()) + ": pass it in a file, a variable or the input");
  }
  bytes.resize(static_cast<std::size_t>(written));
  return bytes;
}

std::thread StartQuietThread(std::function<void()> run) {
  try {
    return std::thread(std::move(run));
  } catch (const std::system_error& failure) {
    throw StartFailure("java/win32/Surroundings", __LINE__,
                       "Could not start a thread for the program: " + failure.code().message());
  }
}

TemporaryFile::TemporaryFile(const std::string& bytes) {
  static std::atomic<unsigned long> s_count = 0;
  wchar_t folder[MAX_PATH + 1];
  const DWORD size = GetTempPathW(MAX_PATH + 1, folder);
  m_path = std::wstring(folder, size) + L"java-arguments-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
           std::to_wstring(GetTickCount64()) + L"-" + std::to_wstring(++s_count);
  WindowsHandle file(
      CreateFileW(m_path.native().c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_TEMPORARY, nullptr));
  DWORD written = 0;
  if (file && WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) != FALSE &&
      written == bytes.size()) {
    return;
  }
  const DWORD error = GetLastError();
  if (file) {
    file.Close();
    DeleteFileW(m_path.native().c_str());
  }
  throw StartFailure("java/win32/Surroundings", __LINE__,
                     "Could not write the argument file \"" + ToText(m_path) + "\": " + ReasonOf(error));
}

TemporaryFile::~TemporaryFile() { DeleteFileW(m_path.native().c_str()); }

}  // namespace torvan::java::detail
