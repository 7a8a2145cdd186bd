// The real registry. In this process another key replaces HKEY_LOCAL_MACHINE, so that nothing that is installed on
// the machine is read or changed.
#include <gtest/gtest.h>
#include <torvan/JavaRuntimeException.h>
#include <windows.h>

#include <string>

#include "fakes/DebugOut.h"
#include "fakes/Failure.h"
#include "fakes/WideText.h"
#include "jni/WinJavaRuntimeLibraryImpl.h"

namespace tests {
namespace {

using torvan::jni::CDynamicJavaRuntime;
using torvan::jni::CJavaRuntimeException;
using torvan::jni::CWinJavaRuntimeLibraryImpl;
using VmVendor = CDynamicJavaRuntime::VmVendor;
using VmType = CDynamicJavaRuntime::VmType;

constexpr const char* LibraryTag = "jni/WinJavaRuntimeLibraryImpl";
constexpr const wchar_t* OwnKey = L"Software\\TorvanRuntimeTest";
constexpr const wchar_t* RuntimeRoot = L"Software\\JavaSoft\\Java Runtime Environment";
constexpr const wchar_t* KitRoot = L"Software\\JavaSoft\\Java Development Kit";
constexpr const wchar_t* Library = L"C:\\Registered\\jvm.dll";
constexpr const wchar_t* Home = L"C:\\Java";

class WinJavaRuntimeLibraryImplRegistryTest : public ::testing::Test {
 protected:
  void SetUp() override {
    RegDeleteTreeW(HKEY_CURRENT_USER, OwnKey);
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, OwnKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &m_key, nullptr), 0);
    ASSERT_EQ(RegOverridePredefKey(HKEY_LOCAL_MACHINE, m_key), 0);
  }
  void TearDown() override {
    EXPECT_EQ(RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr), 0);
    RegCloseKey(m_key);
    EXPECT_EQ(RegDeleteTreeW(HKEY_CURRENT_USER, OwnKey), 0);
  }

  static void SetRaw(const std::wstring& key, const wchar_t* name, DWORD type, const std::wstring& units) {
    HKEY opened = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &opened, nullptr), 0);
    const auto size = static_cast<DWORD>(units.size() * sizeof(wchar_t));
    EXPECT_EQ(RegSetValueExW(opened, name, 0, type, reinterpret_cast<const BYTE*>(units.c_str()), size), 0);
    RegCloseKey(opened);
  }
  static void Set(const std::wstring& key, const wchar_t* name, const std::wstring& text) {
    SetRaw(key, name, REG_SZ, text + L'\0');
  }
  static std::wstring PathOf(VmType type, const wchar_t* version) {
    return static_cast<const wchar_t*>(CWinJavaRuntimeLibraryImpl(CDynamicJavaRuntime::Sun, type, version).GetPath());
  }
  static Failure FailureToLocate(VmType type, const wchar_t* version, int vendor = 0) {
    return FailureOf([&] { CWinJavaRuntimeLibraryImpl(static_cast<VmVendor>(vendor), type, version); });
  }
  static Failure RuntimeFailure(unsigned int line, const char* message) {
    return Throws<CJavaRuntimeException>(LibraryTag, line, message);
  }

  DebugOut debugOut;

 private:
  HKEY m_key = nullptr;
};

struct Kind {
  const char* name;
  VmType type;
  const wchar_t* version;
  const wchar_t* root;
  const wchar_t* value;
  const wchar_t* stored;
  const wchar_t* path;
  unsigned int notFoundLine;
  const char* notFound;

  std::wstring Key() const { return std::wstring(root) + L"\\" + version; }
};

class WinJavaRuntimeLibraryImplRegistryKindTest : public WinJavaRuntimeLibraryImplRegistryTest,
                                                  public ::testing::WithParamInterface<Kind> {};

// clang-format off
INSTANTIATE_TEST_SUITE_P(Kinds, WinJavaRuntimeLibraryImplRegistryKindTest, ::testing::Values(
    Kind{"Default", CDynamicJavaRuntime::Default, L"1.5.0",    RuntimeRoot, L"RuntimeLib", Library,
         Library, 223, "The specified Sun JRE version is not found."},
    Kind{"Classic", CDynamicJavaRuntime::Classic, L"1.3.1_20", RuntimeRoot, L"JavaHome",   Home,
         L"C:\\Java\\bin\\classic\\jvm.dll", 238, "The specified Classic Sun JRE version is not found."},
    Kind{"Client",  CDynamicJavaRuntime::Client,  L"1.4.2",    RuntimeRoot, L"JavaHome",   Home,
         L"C:\\Java\\bin\\client\\jvm.dll", 253, "The specified Client Sun JRE version is not found."},
    Kind{"Server",  CDynamicJavaRuntime::Server,  L"1.4.2",    KitRoot,     L"JavaHome",   Home,
         L"C:\\Java\\jre\\bin\\server\\jvm.dll", 268, "The specified Server Sun JRE version is not found."}),
    [](const auto& row) { return row.param.name; });
// clang-format on

TEST_P(WinJavaRuntimeLibraryImplRegistryKindTest, IsFoundByItsVersion) {
  Set(GetParam().Key(), GetParam().value, GetParam().stored);
  EXPECT_EQ(PathOf(GetParam().type, GetParam().version), GetParam().path);
}

TEST_P(WinJavaRuntimeLibraryImplRegistryKindTest, IsFoundByTheCurrentVersion) {
  Set(RuntimeRoot, L"CurrentVersion", GetParam().version);
  Set(GetParam().Key(), GetParam().value, GetParam().stored);
  EXPECT_EQ(PathOf(GetParam().type, nullptr), GetParam().path);
  EXPECT_EQ(PathOf(GetParam().type, L""), GetParam().path);
}

TEST_P(WinJavaRuntimeLibraryImplRegistryKindTest, IsReportedWhenItsKeyOrItsValueIsMissing) {
  const Failure notFound = RuntimeFailure(GetParam().notFoundLine, GetParam().notFound);
  EXPECT_EQ(FailureToLocate(GetParam().type, GetParam().version), notFound);
  EXPECT_NE(debugOut.Text().find("Failed to open the specified subkey."), std::string::npos) << debugOut.Text();
  Set(GetParam().Key(), L"Other", L"text");
  EXPECT_EQ(FailureToLocate(GetParam().type, GetParam().version), notFound);
  EXPECT_NE(debugOut.Text().find("Failed to query the specified value."), std::string::npos) << debugOut.Text();
}

TEST_F(WinJavaRuntimeLibraryImplRegistryTest, NothingInstalledIsReported) {
  EXPECT_EQ(FailureToLocate(CDynamicJavaRuntime::Default, L""),
            RuntimeFailure(206, "There is not any Sun JRE installed in the current system."));
}

TEST_F(WinJavaRuntimeLibraryImplRegistryTest, UnknownVendorsTypesAndVersionsAreReported) {
  EXPECT_EQ(FailureToLocate(CDynamicJavaRuntime::Default, L"1.5.0", 1),
            RuntimeFailure(283, "Unknown Java Runtime vendor."));
  EXPECT_EQ(FailureToLocate(static_cast<VmType>(4), L"1.5.0"), RuntimeFailure(275, "Unknown Java Runtime type."));
  EXPECT_EQ(FailureToLocate(CDynamicJavaRuntime::Classic, L"1.5.0"),
            RuntimeFailure(231, "Invalid Classic Sun JRE version."));
  EXPECT_EQ(FailureToLocate(CDynamicJavaRuntime::Client, L"1.5.0"),
            RuntimeFailure(246, "Invalid Client Sun JRE version."));
  EXPECT_EQ(FailureToLocate(CDynamicJavaRuntime::Server, L"1.5.0"),
            RuntimeFailure(261, "Invalid Server Sun JRE version."));
}

TEST_F(WinJavaRuntimeLibraryImplRegistryTest, TextsOfUpTo1040UnitsAreRead) {
  const std::wstring key = std::wstring(RuntimeRoot) + L"\\1.5.0";
  Set(key, L"RuntimeLib", std::wstring(1039, L'p'));
  EXPECT_EQ(PathOf(CDynamicJavaRuntime::Default, L"1.5.0"), std::wstring(1039, L'p'));
  Set(key, L"RuntimeLib", std::wstring(1040, L'p'));
  EXPECT_EQ(FailureToLocate(CDynamicJavaRuntime::Default, L"1.5.0"),
            RuntimeFailure(223, "The specified Sun JRE version is not found."));
  EXPECT_NE(debugOut.Text().find("234"), std::string::npos) << debugOut.Text();
}

TEST_F(WinJavaRuntimeLibraryImplRegistryTest, TypeOfAValueAndItsTerminatingZeroDoNotMatter) {
  const std::wstring key = std::wstring(RuntimeRoot) + L"\\1.5.0";
  for (const DWORD type : {REG_SZ, REG_EXPAND_SZ, REG_MULTI_SZ, REG_BINARY}) {
    SetRaw(key, L"RuntimeLib", type, Library);
    EXPECT_EQ(PathOf(CDynamicJavaRuntime::Default, L"1.5.0"), Library) << type;
  }
}

}  // namespace
}  // namespace tests
