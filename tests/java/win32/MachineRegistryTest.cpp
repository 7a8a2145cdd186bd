// The real registry. In this process, other keys replace HKEY_LOCAL_MACHINE and HKEY_CURRENT_USER, so that nothing
// that is installed on the machine is read or changed.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include "java/runtimes/MadeUpMachine.h"

namespace tests {
namespace {

using namespace torvan::java;
using namespace torvan::java::detail;

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const wchar_t* OwnKey = L"Software\\TorvanRuntimesTest";

std::wstring Wide(const std::string& text) { return ToPath(text).wstring(); }

class RegistryMachine : public MadeUpMachine {
 public:
  std::vector<std::string> KeysIn(const std::string& key) const override { return ThisMachine().KeysIn(key); }
  std::optional<std::string> RegisteredText(const std::string& key, const std::string& value) const override {
    return ThisMachine().RegisteredText(key, value);
  }
};

class MachineRegistryTest : public testing::Test {
 protected:
  void SetUp() override {
    RegDeleteTreeW(HKEY_CURRENT_USER, OwnKey);
    for (Root& root : m_roots) {
      const std::wstring path = std::wstring(OwnKey) + L'\\' + root.name;
      ASSERT_EQ(
          RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &root.own, nullptr),
          0);
    }
    for (const Root& root : m_roots) ASSERT_EQ(RegOverridePredefKey(root.predefined, root.own), 0);
  }
  void TearDown() override {
    for (const Root& root : m_roots) {
      EXPECT_EQ(RegOverridePredefKey(root.predefined, nullptr), 0);
      RegCloseKey(root.own);
    }
    EXPECT_EQ(RegDeleteTreeW(HKEY_CURRENT_USER, OwnKey), 0);
  }

  static void SetRaw(const std::string& key, const std::string& name, DWORD type, const std::wstring& units) {
    const HKEY root = key.substr(0, 5) == "HKLM\\" ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
    HKEY opened = nullptr;
    ASSERT_EQ(RegCreateKeyExW(root, Wide(key.substr(5)).c_str(), 0, nullptr, 0, KEY_WRITE | KEY_WOW64_64KEY, nullptr,
                              &opened, nullptr),
              0);
    const auto size = static_cast<DWORD>(units.size() * sizeof(wchar_t));
    EXPECT_EQ(RegSetValueExW(opened, Wide(name).c_str(), 0, type, reinterpret_cast<const BYTE*>(units.c_str()), size),
              0);
    RegCloseKey(opened);
  }
  static void Set(const std::string& key, const std::string& name, const std::string& text) {
    SetRaw(key, name, REG_SZ, Wide(text) + L'\0');
  }
  std::vector<std::string> Found() { return Lines(SearchOf(machine)); }

  RegistryMachine machine;

 private:
  struct Root {
    HKEY predefined;
    HKEY own;
    const wchar_t* name;
  };
  Root m_roots[2] = {{HKEY_LOCAL_MACHINE, nullptr, L"Machine"}, {HKEY_CURRENT_USER, nullptr, L"User"}};
};

// As the installers write them.
struct Row {
  const char* key;
  const char* value;
};

// clang-format off
const Row Rows[] = {
    {"JavaSoft\\Java Runtime Environment\\1.8",          "JavaHome"},
    {"JavaSoft\\Java Runtime Environment\\1.8.0_391",    "JavaHome"},
    {"JavaSoft\\Java Development Kit\\1.8.0_391",        "JavaHome"},
    {"JavaSoft\\Java Development Kit\\1.8.0.212",        "JavaHome"},
    {"JavaSoft\\JRE\\9.0.4",                             "JavaHome"},
    {"JavaSoft\\JDK\\21.0.1",                            "JavaHome"},
    {"Eclipse Adoptium\\JDK\\21.0.1.12\\hotspot\\MSI",   "Path"},
    {"Eclipse Adoptium\\JRE\\21.0.1.12\\hotspot\\MSI",   "Path"},
    {"Eclipse Foundation\\JDK\\17.0.0.35\\hotspot\\MSI", "Path"},
    {"Eclipse Foundation\\JRE\\17.0.0.35\\hotspot\\MSI", "Path"},
    {"AdoptOpenJDK\\JDK\\8.0.222.10\\hotspot\\MSI",      "Path"},
    {"AdoptOpenJDK\\JRE\\8.0.222.10\\openj9\\MSI",       "Path"},
    {"Microsoft\\JDK\\17.0.13.11\\hotspot\\MSI",         "Path"},
    {"Azul Systems\\Zulu\\zulu-17",                      "InstallationPath"},
    {"Azul Systems\\Zulu\\zulu-8-jre",                   "InstallationPath"},
    {"Azul Systems\\Zulu 32-bit\\zulu-8",                "InstallationPath"},
    {"BellSoft\\Liberica\\jdk-8",                        "InstallationPath"},
    {"BellSoft\\Liberica\\jre-8\\MSI",                   "InstallationPath"},
    {"Semeru\\JDK\\8.0.382.5\\openj9\\MSI",              "Path"},
    {"Semeru\\JRE\\8.0.382.5\\openj9\\MSI",              "Path"},
};
// clang-format on

TEST_F(MachineRegistryTest, EveryInstallersKeyIsRead) {
  const std::string home = machine.AddRuntime("jdk", "17");
  for (const char* root :
       {"HKLM\\SOFTWARE\\", "HKLM\\SOFTWARE\\WOW6432Node\\", "HKCU\\SOFTWARE\\", "HKCU\\SOFTWARE\\WOW6432Node\\"}) {
    for (const Row& row : Rows) {
      Set(root + std::string(row.key), row.value, home + "\\");
      EXPECT_THAT(Found(), ElementsAre(home + " 17 " + root + row.key));
      Set(root + std::string(row.key), row.value, "");
    }
  }
  EXPECT_THAT(Found(), IsEmpty());
}

TEST_F(MachineRegistryTest, AHomeThatSeveralKeysNameIsListedOnce) {
  const std::string home = machine.AddRuntime("jdk", "17");
  for (const Row& row : Rows) Set("HKCU\\SOFTWARE\\" + std::string(row.key), row.value, home);
  EXPECT_THAT(Found(), ElementsAre(home + " 17 HKCU\\SOFTWARE\\JavaSoft\\Java Runtime Environment\\1.8"));
  machine.Set("JAVA_HOME", home);
  EXPECT_THAT(Found(), ElementsAre(home + " 17 JAVA_HOME"));
}

TEST_F(MachineRegistryTest, AnUninstalledRuntimeIsRefused) {
  const std::string key = "HKLM\\SOFTWARE\\JavaSoft\\JDK\\17";
  const std::string nowhere = machine.Path("nowhere");
  Set(key, "JavaHome", nowhere);
  EXPECT_THAT(Found(), ElementsAre(nowhere + ": " + machine.Locate(ToPath(nowhere)).reason + " (" + key + ")"));
  Set(key, "JavaHome", "jdk");
  EXPECT_THAT(Found(), ElementsAre("jdk: is not an absolute path (" + key + ")"));
}

TEST_F(MachineRegistryTest, ValuesMayHoldVariables) {
  const std::string home = machine.AddRuntime("jdk", "17");
  SetEnvironmentVariableW(L"TORVAN_REGISTRY_TEST", Wide(machine.Path()).c_str());
  const std::string key = "HKLM\\SOFTWARE\\Microsoft\\JDK\\17\\hotspot\\MSI";
  SetRaw(key, "Path", REG_EXPAND_SZ, L"%TORVAN_REGISTRY_TEST%\\jdk\\" + std::wstring(1, L'\0'));
  EXPECT_THAT(Found(), ElementsAre(home + " 17 " + key));
}

TEST_F(MachineRegistryTest, ValuesNeedNoTerminatingZero) {
  const std::string home = machine.AddRuntime("jdk \u00E4\u4E2D", "17");
  const std::string key = "HKLM\\SOFTWARE\\JavaSoft\\JDK\\17";
  SetRaw(key, "JavaHome", REG_SZ, Wide(home));
  EXPECT_THAT(Found(), ElementsAre(home + " 17 " + key));
  SetRaw(key, "JavaHome", REG_SZ, Wide(home) + std::wstring(L"\0rest\0", 6));
  EXPECT_THAT(Found(), ElementsAre(home + " 17 " + key));
}

TEST_F(MachineRegistryTest, WhatIsNoPathIsPassedOver) {
  const std::string key = "HKLM\\SOFTWARE\\JavaSoft\\JDK\\17";
  Set(key, "CurrentVersion", "17");
  EXPECT_THAT(Found(), IsEmpty());
  for (const DWORD type : {REG_DWORD, REG_BINARY, REG_MULTI_SZ}) {
    SetRaw(key, "JavaHome", type, L"ab");
    EXPECT_THAT(Found(), IsEmpty()) << type;
  }
  SetRaw(key, "JavaHome", REG_SZ, std::wstring(40000, L'x'));
  EXPECT_THAT(Found(), IsEmpty());
}

}  // namespace
}  // namespace tests
