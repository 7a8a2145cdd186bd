#include "jvmlauncher/ProbeRuntime.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <fstream>

namespace tests {

namespace fs = std::filesystem;

namespace {

constexpr const wchar_t* OwnKey = L"Software\\TorvanLaunchTest";
constexpr const char* Library = "jvm.dll";

}  // namespace

void SetEnvironment(const char* name, const std::string& value) { SetEnvironmentVariableA(name, value.c_str()); }

void UnsetEnvironment(const char* name) { SetEnvironmentVariableA(name, nullptr); }

std::vector<const char*> ProbeRuntime::Programs() { return {"java.exe", "javaw.exe"}; }

fs::path ProbeRuntime::ProbeProgram() {
  wchar_t path[MAX_PATH];
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  return fs::path(path).parent_path() / "launch_probe.exe";
}

std::string ProbeRuntime::ProcessName() { return std::to_string(GetCurrentProcessId()); }

void ProbeRuntime::Install() {
  std::ofstream(Home() / Library).flush();
  RegDeleteTreeW(HKEY_CURRENT_USER, OwnKey);
  HKEY key = nullptr;
  EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, OwnKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr), 0);
  EXPECT_EQ(RegOverridePredefKey(HKEY_LOCAL_MACHINE, key), 0);
  RegCloseKey(key);
  RegisterAgain();
}

void ProbeRuntime::Uninstall() {
  EXPECT_EQ(RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr), 0);
  EXPECT_EQ(RegDeleteTreeW(HKEY_CURRENT_USER, OwnKey), 0);
}

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

}  // namespace tests
