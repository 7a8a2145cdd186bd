#include "jvmlauncher/ProbeRuntime.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <thread>

#if defined(_WIN32)
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace tests {

namespace fs = std::filesystem;

namespace {

#if defined(_WIN32)
constexpr const wchar_t* OwnKey = L"Software\\TorvanLaunchTest";
constexpr const char* Programs[] = {"java.exe", "javaw.exe"};
constexpr const char* Library = "jvm.dll";

fs::path ProbeProgram() {
  wchar_t path[MAX_PATH];
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  return fs::path(path).parent_path() / "launch_probe.exe";
}
unsigned long ProcessId() { return GetCurrentProcessId(); }
#else
constexpr const char* Programs[] = {"java"};
constexpr const char* Library = "lib/server/libjvm.so";

fs::path ProbeProgram() { return fs::read_symlink("/proc/self/exe").parent_path() / "launch_probe"; }
int ProcessId() { return getpid(); }
#endif

void WriteFile(const fs::path& path, const std::string& text) {
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << text;
}

}  // namespace

#if defined(_WIN32)
void SetEnvironment(const char* name, const std::string& value) { SetEnvironmentVariableA(name, value.c_str()); }
void UnsetEnvironment(const char* name) { SetEnvironmentVariableA(name, nullptr); }
#else
void SetEnvironment(const char* name, const std::string& value) { setenv(name, value.c_str(), 1); }
void UnsetEnvironment(const char* name) { unsetenv(name); }
#endif

ProbeRuntime::ProbeRuntime() : m_folder(fs::temp_directory_path() / ("torvan launch " + std::to_string(ProcessId()))) {
  for (const char* program : Programs) {
    fs::create_directories(Home() / "bin");
    fs::copy_file(ProbeProgram(), Home() / "bin" / program, fs::copy_options::overwrite_existing);
  }
  WriteFile(Home() / Library, "");
#if defined(_WIN32)
  RegDeleteTreeW(HKEY_CURRENT_USER, OwnKey);
  HKEY key = nullptr;
  EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, OwnKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr), 0);
  EXPECT_EQ(RegOverridePredefKey(HKEY_LOCAL_MACHINE, key), 0);
  RegCloseKey(key);
  RegisterAgain();
#else
  WriteFile(Home() / "release", std::string("JAVA_VERSION=\"") + Version + "\"\n");
  SetEnvironment("JAVA_HOME", Home());
#endif
}

ProbeRuntime::~ProbeRuntime() {
#if defined(_WIN32)
  EXPECT_EQ(RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr), 0);
  EXPECT_EQ(RegDeleteTreeW(HKEY_CURRENT_USER, OwnKey), 0);
#else
  UnsetEnvironment("JAVA_HOME");
#endif
  // A program that was killed a moment ago may still hold its file.
  std::error_code error;
  for (int i = 0; i < 100 && (fs::remove_all(m_folder, error), error); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
}

fs::path ProbeRuntime::Program() const { return Home() / "bin" / Programs[std::size(Programs) - 1]; }

#if defined(_WIN32)
void ProbeRuntime::Register(const wchar_t* source, const char* version) {
  const std::wstring path = std::wstring(source) + L"\\" + fs::path(version).wstring();
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr), 0);
  const auto set = [key](const wchar_t* name, const std::wstring& text) {
    const auto size = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
    EXPECT_EQ(RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()), size), 0);
  };
  set(L"JavaHome", Home().wstring());
  set(L"RuntimeLib", (Home() / Library).wstring());
  RegCloseKey(key);
}

void ProbeRuntime::RegisterIn32BitView(const char* version) {
  Register(L"Software\\Wow6432Node\\JavaSoft\\Java Runtime Environment", version);
}

void ProbeRuntime::UnregisterAll() { EXPECT_EQ(RegDeleteTreeW(HKEY_LOCAL_MACHINE, L"Software"), 0); }

void ProbeRuntime::RegisterAgain() { Register(L"Software\\JavaSoft\\Java Runtime Environment", Version); }
#endif

std::vector<std::string> ReadReport(const fs::path& file) {
  for (int i = 0; i < 400 && !fs::exists(file); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(50));
  std::ifstream stream(file, std::ios::binary);
  EXPECT_TRUE(stream.good()) << file << " was not written";
  std::vector<std::string> texts;
  for (std::string text; std::getline(stream, text, '\0');) texts.push_back(text);
  return texts;
}

}  // namespace tests
