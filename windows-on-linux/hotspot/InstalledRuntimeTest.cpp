// The runtime that is installed under Wine, found by what the real registry says of it.
#include <windows.h>

#include "fakes/Failure.h"
#include "realvm/OwnProcess.h"

namespace {

using namespace tests;
using tests::FailureOf;
using tests::Throws;
using torvan::jni::CDynamicJavaRuntime;
using torvan::jni::CJavaRuntimeException;
using torvan::jni::CJavaVm;
using Vms = mirel::util::CVector<CJavaVm>;

constexpr const wchar_t* RuntimeLib = L"C:\\Program Files\\Java\\jre\\bin\\server\\jvm.dll";
constexpr const wchar_t* ClassicLib = L"C:\\Program Files\\Java\\jre\\bin\\classic\\jvm.dll";
constexpr const wchar_t* ClientLib = L"C:\\Program Files\\Java\\jre\\bin\\client\\jvm.dll";
constexpr const wchar_t* ServerLib = L"C:\\Program Files\\Java\\jdk\\jre\\bin\\server\\jvm.dll";

CDynamicJavaRuntime Find(CDynamicJavaRuntime::VmType type, const wchar_t* version) {
  return CDynamicJavaRuntime(CDynamicJavaRuntime::Sun, type, version, JNI_VERSION_1_6);
}

TEST(InstalledRuntimeTest, EachKindOfVmIsFoundByItsVersionAndRuns) {
  const struct {
    const char* name;
    CDynamicJavaRuntime::VmType type;
    const wchar_t* version;
    const wchar_t* library;
  } rows[] = {
      {"default, current", CDynamicJavaRuntime::Default, nullptr, RuntimeLib},
      {"default, by version", CDynamicJavaRuntime::Default, L"17.0", RuntimeLib},
      {"classic", CDynamicJavaRuntime::Classic, L"1.3.1", ClassicLib},
      {"client", CDynamicJavaRuntime::Client, L"1.4.2", ClientLib},
      {"server", CDynamicJavaRuntime::Server, L"1.4.2", ServerLib},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    InOwnProcess([&row] {
      CDynamicJavaRuntime runtime = Find(row.type, row.version);
      for (const wchar_t* library : {RuntimeLib, ClassicLib, ClientLib, ServerLib}) {
        EXPECT_EQ(GetModuleHandleW(library) != nullptr, library == row.library) << tests::Narrow(library);
      }
      const CJavaVm vm = runtime.CreateJavaVm(FixtureOptions(), false);
      EXPECT_EQ(vm.FindClass("java/lang/Math").CallStaticIntMethod("abs", "(I)I", -4), 4);
    });
  }
}

TEST(InstalledRuntimeTest, WhatTheRegistryDoesNotHaveIsRefused) {
  const struct {
    CDynamicJavaRuntime::VmType type;
    const wchar_t* version;
    unsigned int line;
    const char* message;
  } rows[] = {
      {CDynamicJavaRuntime::Default, L"1.5.0", 223, "The specified Sun JRE version is not found."},
      {CDynamicJavaRuntime::Classic, nullptr, 231, "Invalid Classic Sun JRE version."},
      {CDynamicJavaRuntime::Classic, L"1.3.0", 238, "The specified Classic Sun JRE version is not found."},
      {CDynamicJavaRuntime::Client, nullptr, 246, "Invalid Client Sun JRE version."},
      {CDynamicJavaRuntime::Client, L"1.4.0", 253, "The specified Client Sun JRE version is not found."},
      {CDynamicJavaRuntime::Server, nullptr, 261, "Invalid Server Sun JRE version."},
      {CDynamicJavaRuntime::Server, L"1.4.0", 268, "The specified Server Sun JRE version is not found."},
  };
  InOwnProcess([&rows] {
    for (const auto& row : rows) {
      EXPECT_EQ(FailureOf([&row] { Find(row.type, row.version); }),
                Throws<CJavaRuntimeException>("jni/WinJavaRuntimeLibraryImpl", row.line, row.message));
    }
  });
}

TEST(InstalledRuntimeTest, ALibraryWithoutAVmGoesWithItsLastHandle) {
  InOwnProcess([] {
    {
      const CDynamicJavaRuntime runtime = Runtime();
      { const CDynamicJavaRuntime other = Runtime(); }
      EXPECT_NE(GetModuleHandleW(RuntimeLib), nullptr);
    }
    EXPECT_EQ(GetModuleHandleW(RuntimeLib), nullptr);
  });
}

// A VM cannot be unloaded: it keeps its library loaded, even when others free it.
TEST(InstalledRuntimeTest, ALibraryWithAVmStaysWhenItIsFreed) {
  InOwnProcess([] {
    Runtime()
        .CreateJavaVm(FixtureOptions(), false)
        .FindClass("fixture/Kinds$Counter")
        .SetStaticIntField("shared", "I", 5);
    const HMODULE library = GetModuleHandleW(RuntimeLib);
    ASSERT_NE(library, nullptr);
    FreeLibrary(library);
    EXPECT_EQ(GetModuleHandleW(RuntimeLib), library);
    Vms vms(0, 1);
    EXPECT_EQ(Runtime().GetCreatedJavaVms(vms), 1u);
    FreeLibrary(library);
    EXPECT_EQ(vms[0].FindClass("fixture/Kinds$Counter").GetStaticIntField("shared", "I"), 5);
  });
}

}  // namespace
