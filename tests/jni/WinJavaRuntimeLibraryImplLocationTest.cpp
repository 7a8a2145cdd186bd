// Where the registry says that a runtime library is.
#include <mirel/base/MemoryException.h>
#include <mirel/util/NoSuchElementException.h>

#include "ThisSystem.h"
#include "fakes/Allocations.h"
#include "jni/LibraryTest.h"
#include "jni/WinJavaRuntimeLibraryImpl.h"

namespace tests {
namespace {

using torvan::jni::CWinJavaRuntimeLibraryImpl;

constexpr const char* Home = OnThisSystem("C:\\Java", "/opt/java");
constexpr const char* ClassicPath = OnThisSystem("C:\\Java\\bin\\classic\\jvm.dll", "/opt/java/lib/classic/libjvm.so");
constexpr const char* ClientPath = OnThisSystem("C:\\Java\\bin\\client\\jvm.dll", "/opt/java/lib/client/libjvm.so");
constexpr const char* ServerPath =
    OnThisSystem("C:\\Java\\jre\\bin\\server\\jvm.dll", "/opt/java/jre/lib/server/libjvm.so");
constexpr const char* RegisteredPath = "C:\\Registered\\jvm.dll";

constexpr const char* RuntimeRoot = "Software\\JavaSoft\\Java Runtime Environment";
constexpr const char* KitRoot = "Software\\JavaSoft\\Java Development Kit";

constexpr VmType Classic = CDynamicJavaRuntime::Classic;
constexpr VmType Client = CDynamicJavaRuntime::Client;
constexpr VmType Server = CDynamicJavaRuntime::Server;

std::string PathOf(VmType type, const RX::UniChar* version) {
  return Narrow(CWinJavaRuntimeLibraryImpl(Sun, type, version).GetPath());
}

Failure FailureToLocate(VmVendor vendor, VmType type, const RX::UniChar* version) {
  return FailureOf([&] { CWinJavaRuntimeLibraryImpl(vendor, type, version); });
}

Failure RuntimeFailure(unsigned int line, const char* message) {
  return Throws<CJavaRuntimeException>(LocationTag, line, message);
}

const Failure NothingInstalled = RuntimeFailure(206, "There is not any Sun JRE installed in the current system.");

TEST(WinJavaRuntimeLibraryImplLocationNumbersTest, VendorsAndTypesHaveTheirPublishedNumbers) {
  EXPECT_EQ(static_cast<int>(Sun), 0);
  EXPECT_EQ(static_cast<int>(Default), 0);
  EXPECT_EQ(static_cast<int>(Classic), 1);
  EXPECT_EQ(static_cast<int>(Client), 2);
  EXPECT_EQ(static_cast<int>(Server), 3);
}

// --- Every kind of VM ---

struct Kind {
  const char* name;
  VmType type;
  const char* version;
  const char* root;
  const char* value;
  const char* stored;
  const char* path;
  unsigned int notFoundLine;
  const char* notFound;

  std::string Key() const { return std::string(root) + "\\" + version; }
  Failure NotFound() const { return RuntimeFailure(notFoundLine, notFound); }
};

void PrintTo(const Kind& kind, std::ostream* out) { *out << kind.name; }

class WinJavaRuntimeLibraryImplLocationKindTest : public LibraryTest, public ::testing::WithParamInterface<Kind> {
 protected:
  const Kind& kind = GetParam();
  const WideText version = Widen(kind.version);
};

constexpr const char* NoDefault = "The specified Sun JRE version is not found.";
constexpr const char* NoClassic = "The specified Classic Sun JRE version is not found.";
constexpr const char* NoClient = "The specified Client Sun JRE version is not found.";
constexpr const char* NoServer = "The specified Server Sun JRE version is not found.";

// What depends on the type alone.
Kind DefaultVm(const char* name, const char* version) {
  return {name, Default, version, RuntimeRoot, "RuntimeLib", RegisteredPath, RegisteredPath, 223, NoDefault};
}
Kind ClassicVm(const char* name, const char* version) {
  return {name, Classic, version, RuntimeRoot, "JavaHome", Home, ClassicPath, 238, NoClassic};
}
Kind ClientVm(const char* name, const char* version) {
  return {name, Client, version, RuntimeRoot, "JavaHome", Home, ClientPath, 253, NoClient};
}
Kind ServerVm(const char* name, const char* version) {
  return {name, Server, version, KitRoot, "JavaHome", Home, ServerPath, 268, NoServer};
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Kinds, WinJavaRuntimeLibraryImplLocationKindTest, ::testing::Values(
    DefaultVm("DefaultOfAnOldRuntime",    "1.2"),
    DefaultVm("DefaultOfANewRuntime",     "1.5.0"),
    DefaultVm("DefaultOfAnyName",         "whatever"),
    ClassicVm("Classic",                  "1.3.1_20"),
    ClassicVm("ClassicOfAVersionAfter1", "11.3"),
    ClientVm ("Client",                   "1.4"),
    ClientVm ("ClientWithin",             "x1.4.2_19"),
    ServerVm ("Server",                   "1.4.2"),
    ServerVm ("ServerOfAVersionAfter1",  "21.4")),
    [](const auto& row) { return row.param.name; });
// clang-format on

TEST_P(WinJavaRuntimeLibraryImplLocationKindTest, LibraryIsFoundWithOneReadOfTheRegistry) {
  system.SetValue(kind.Key(), kind.value, kind.stored);
  EXPECT_EQ(PathOf(kind.type, version.c_str()), kind.path);
  EXPECT_THAT(system.Log(),
              ElementsAre("OpenKey(HKLM, " + kind.Key() + ", 0x20019)",
                          "QueryValue(" + kind.Key() + ", " + kind.value + ", 2080)", "CloseKey(" + kind.Key() + ")"));
  EXPECT_EQ(debugOut.Text(), "");
}

TEST_P(WinJavaRuntimeLibraryImplLocationKindTest, CurrentVersionIsReadFirstWhenNoneIsGiven) {
  system.SetValue(RuntimeRoot, "CurrentVersion", kind.version);
  system.SetValue(kind.Key(), kind.value, kind.stored);
  for (const RX::UniChar* none : {static_cast<const RX::UniChar*>(nullptr), RX_TEXT("")}) {
    system.ClearLog();
    EXPECT_EQ(PathOf(kind.type, none), kind.path);
    EXPECT_THAT(
        system.Log(),
        ElementsAre("OpenKey(HKLM, Software\\JavaSoft\\Java Runtime Environment, 0x20019)",
                    "QueryValue(Software\\JavaSoft\\Java Runtime Environment, CurrentVersion, 2080)",
                    "CloseKey(Software\\JavaSoft\\Java Runtime Environment)",
                    "OpenKey(HKLM, " + kind.Key() + ", 0x20019)",
                    "QueryValue(" + kind.Key() + ", " + kind.value + ", 2080)", "CloseKey(" + kind.Key() + ")"));
  }
}

TEST_P(WinJavaRuntimeLibraryImplLocationKindTest, MissingKeyIsPrintedAndReportedAsVersionNotFound) {
  EXPECT_EQ(FailureToLocate(Sun, kind.type, version.c_str()), kind.NotFound());
  EXPECT_THAT(system.Log(), ElementsAre("OpenKey(HKLM, " + kind.Key() + ", 0x20019)"));
  EXPECT_THAT(debugOut.Text(), HasSubstr("Failed to open the specified subkey."));
  EXPECT_THAT(debugOut.Text(), HasSubstr("jni/WinJavaRuntimeLibraryImpl"));
  EXPECT_THAT(debugOut.Text(), HasSubstr("40"));
}

TEST_P(WinJavaRuntimeLibraryImplLocationKindTest, MissingValueIsPrintedAndReportedAndLeavesTheKeyOpen) {
  system.AddKey(kind.Key());
  EXPECT_EQ(FailureToLocate(Sun, kind.type, version.c_str()), kind.NotFound());
  EXPECT_THAT(system.OpenKeys(), ElementsAre(kind.Key()));
  EXPECT_THAT(debugOut.Text(), HasSubstr("Failed to query the specified value."));
  EXPECT_THAT(debugOut.Text(), HasSubstr("47"));
}

TEST_P(WinJavaRuntimeLibraryImplLocationKindTest, StatusOfARefusedKeyIsPrinted) {
  system.FailOpen(kind.Key(), 65536);
  EXPECT_EQ(FailureToLocate(Sun, kind.type, version.c_str()), kind.NotFound());
  EXPECT_THAT(debugOut.Text(), HasSubstr("65536"));
  EXPECT_THAT(system.OpenKeys(), IsEmpty());
}

TEST_P(WinJavaRuntimeLibraryImplLocationKindTest, StatusOfARefusedValueIsPrinted) {
  system.FailQuery(kind.Key(), kind.value, 65536);
  EXPECT_EQ(FailureToLocate(Sun, kind.type, version.c_str()), kind.NotFound());
  EXPECT_THAT(debugOut.Text(), HasSubstr("65536"));
}

TEST_P(WinJavaRuntimeLibraryImplLocationKindTest, NoInstalledRuntimeIsReportedWhenNoVersionIsGiven) {
  system.SetValue(kind.Key() + "\\Elsewhere", kind.value, kind.stored);
  system.FailOpen(RuntimeRoot, 2);
  EXPECT_EQ(FailureToLocate(Sun, kind.type, nullptr), NothingInstalled);
  EXPECT_THAT(system.Log(), ElementsAre("OpenKey(HKLM, Software\\JavaSoft\\Java Runtime Environment, 0x20019)"));
  EXPECT_THAT(debugOut.Text(), HasSubstr("Failed to open the specified subkey."));
}

TEST_P(WinJavaRuntimeLibraryImplLocationKindTest, MemoryFailuresPassAndLeaveNothingBehind) {
  system.SetValue(RuntimeRoot, "CurrentVersion", kind.version);
  system.SetValue(kind.Key(), kind.value, kind.stored);
  const int failures = FailEachAllocation(
      [&] {
        const Failure failure = FailureToLocate(Sun, kind.type, nullptr);
        if (failure == Failure()) return;
        EXPECT_TRUE(failure.type == typeid(mirel::base::CMemoryException)) << failure;
      },
      [&](int, const Allocations& allocations) {
        EXPECT_EQ(allocations.Live(), 0u);
        EXPECT_THAT(system.OpenKeys(), IsEmpty());
      });
  EXPECT_GE(failures, 3);
  EXPECT_EQ(debugOut.Text(), "");
}

TEST_P(WinJavaRuntimeLibraryImplLocationKindTest, OtherFailuresOfTheRegistryPass) {
  system.onOpenKey = [] { throw mirel::util::CNoSuchElementException("elsewhere", 7, nullptr, nullptr); };
  EXPECT_EQ(FailureToLocate(Sun, kind.type, version.c_str()),
            Throws<mirel::util::CNoSuchElementException>("elsewhere", 7, nullptr));
  EXPECT_EQ(debugOut.Text(), "");
}

// --- Versions, vendors and types that are refused ---

struct WrongVersion {
  const char* name;
  VmType type;
  const RX::UniChar* version;
  unsigned int line;
  const char* message;
};

void PrintTo(const WrongVersion& row, std::ostream* out) { *out << row.name; }

class WinJavaRuntimeLibraryImplLocationWrongVersionTest : public LibraryTest,
                                                          public ::testing::WithParamInterface<WrongVersion> {};

// clang-format off
INSTANTIATE_TEST_SUITE_P(Rows, WinJavaRuntimeLibraryImplLocationWrongVersionTest, ::testing::Values(
    WrongVersion{"Classic14",      Classic, RX_TEXT("1.4.2"), 231, "Invalid Classic Sun JRE version."},
    WrongVersion{"Classic15",      Classic, RX_TEXT("1.5.0"), 231, "Invalid Classic Sun JRE version."},
    WrongVersion{"ClassicCut",     Classic, RX_TEXT("1."),    231, "Invalid Classic Sun JRE version."},
    WrongVersion{"Client13",       Client,  RX_TEXT("1.3.1"), 246, "Invalid Client Sun JRE version."},
    WrongVersion{"Client15",       Client,  RX_TEXT("1.5.0"), 246, "Invalid Client Sun JRE version."},
    WrongVersion{"ClientUndotted", Client,  RX_TEXT("14"),    246, "Invalid Client Sun JRE version."},
    WrongVersion{"Server13",       Server,  RX_TEXT("1.3.1"), 261, "Invalid Server Sun JRE version."},
    WrongVersion{"Server15",       Server,  RX_TEXT("1.5.0"), 261, "Invalid Server Sun JRE version."}),
    [](const auto& row) { return row.param.name; });
// clang-format on

TEST_P(WinJavaRuntimeLibraryImplLocationWrongVersionTest, IsRefusedWithoutTouchingTheRegistry) {
  EXPECT_EQ(FailureToLocate(Sun, GetParam().type, GetParam().version),
            RuntimeFailure(GetParam().line, GetParam().message));
  EXPECT_THAT(system.Log(), IsEmpty());
}

TEST_P(WinJavaRuntimeLibraryImplLocationWrongVersionTest, IsRefusedAlsoWhenItIsTheCurrentVersion) {
  system.SetValue(RuntimeRoot, "CurrentVersion", Narrow(GetParam().version));
  EXPECT_EQ(FailureToLocate(Sun, GetParam().type, nullptr), RuntimeFailure(GetParam().line, GetParam().message));
  EXPECT_THAT(system.OpenKeys(), IsEmpty());
}

class WinJavaRuntimeLibraryImplLocationTest : public LibraryTest {};

TEST_F(WinJavaRuntimeLibraryImplLocationTest, UnknownVendorIsReportedBeforeAnythingElse) {
  for (const int vendor : {1, -1}) {
    for (const int type : {0, 1, 2, 3, 4, -1}) {
      for (const RX::UniChar* version : {static_cast<const RX::UniChar*>(nullptr), RX_TEXT("1.5.0")}) {
        EXPECT_EQ(FailureToLocate(static_cast<VmVendor>(vendor), static_cast<VmType>(type), version),
                  RuntimeFailure(283, "Unknown Java Runtime vendor."))
            << vendor << " " << type;
      }
    }
  }
  EXPECT_THAT(system.Log(), IsEmpty());
}

TEST_F(WinJavaRuntimeLibraryImplLocationTest, UnknownTypeIsReportedWithoutTouchingTheRegistry) {
  for (const int type : {4, -1, 100}) {
    EXPECT_EQ(FailureToLocate(Sun, static_cast<VmType>(type), RX_TEXT("1.4")),
              RuntimeFailure(275, "Unknown Java Runtime type."))
        << type;
  }
  EXPECT_THAT(system.Log(), IsEmpty());
}

TEST_F(WinJavaRuntimeLibraryImplLocationTest, UnknownTypeIsReportedOnlyAfterTheCurrentVersionIsFound) {
  EXPECT_EQ(FailureToLocate(Sun, static_cast<VmType>(4), nullptr), NothingInstalled);
  system.SetValue(RuntimeRoot, "CurrentVersion", "1.4");
  EXPECT_EQ(FailureToLocate(Sun, static_cast<VmType>(4), nullptr), RuntimeFailure(275, "Unknown Java Runtime type."));
}

TEST_F(WinJavaRuntimeLibraryImplLocationTest, MissingCurrentVersionIsReportedAsNothingInstalledAndLeavesTheKeyOpen) {
  system.SetValue("Software\\JavaSoft\\Java Runtime Environment\\1.5.0", "RuntimeLib", RegisteredPath);
  EXPECT_EQ(FailureToLocate(Sun, Default, RX_TEXT("")), NothingInstalled);
  EXPECT_THAT(system.OpenKeys(), ElementsAre("Software\\JavaSoft\\Java Runtime Environment"));
  EXPECT_THAT(debugOut.Text(), HasSubstr("Failed to query the specified value."));
}

TEST_F(WinJavaRuntimeLibraryImplLocationTest, EveryFailedQueryLeavesOneMoreKeyOpen) {
  system.AddKey("Software\\JavaSoft\\Java Runtime Environment\\1.5.0");
  for (std::size_t failures = 1; failures <= 3; ++failures) {
    FailureToLocate(Sun, Default, RX_TEXT("1.5.0"));
    EXPECT_EQ(system.OpenKeys().size(), failures);
  }
}

TEST_F(WinJavaRuntimeLibraryImplLocationTest, EmptyCurrentVersionIsTakenAsItIs) {
  system.SetValue(RuntimeRoot, "CurrentVersion", "");
  system.SetValue(RuntimeRoot, "RuntimeLib", RegisteredPath);
  EXPECT_EQ(PathOf(Default, nullptr), RegisteredPath);
  EXPECT_THAT(system.Log(), ::testing::Contains("OpenKey(HKLM, Software\\JavaSoft\\Java Runtime Environment\\, "
                                                "0x20019)"));
}

// --- Lengths and forms of stored texts ---

class WinJavaRuntimeLibraryImplLocationTextTest : public LibraryTest {
 protected:
  static constexpr const char* Key = "Software\\JavaSoft\\Java Runtime Environment\\1.5.0";

  std::string ReadBack(const WideText& stored) {
    system.SetRawValue(Key, "RuntimeLib", stored);
    return PathOf(Default, RX_TEXT("1.5.0"));
  }
};

TEST_F(WinJavaRuntimeLibraryImplLocationTextTest, TextOf1040UnitsWithItsTerminatingZeroFits) {
  EXPECT_EQ(ReadBack(WideText(1039, 'p') + RX::UniChar()), std::string(1039, 'p'));
}

TEST_F(WinJavaRuntimeLibraryImplLocationTextTest, TextOf1040UnitsWithoutTerminatingZeroFits) {
  EXPECT_EQ(ReadBack(WideText(1040, 'p')), std::string(1040, 'p'));
}

TEST_F(WinJavaRuntimeLibraryImplLocationTextTest, TextOf1041UnitsIsRefusedAsMoreDataAndLeavesTheKeyOpen) {
  system.SetRawValue(Key, "RuntimeLib", WideText(1040, 'p') + RX::UniChar());
  EXPECT_EQ(FailureToLocate(Sun, Default, RX_TEXT("1.5.0")), RuntimeFailure(223, NoDefault));
  EXPECT_THAT(debugOut.Text(), HasSubstr("Failed to query the specified value."));
  EXPECT_THAT(debugOut.Text(), HasSubstr("234"));
  EXPECT_THAT(system.OpenKeys(), ElementsAre(Key));
}

TEST_F(WinJavaRuntimeLibraryImplLocationTextTest, TextEndsAtItsFirstZero) {
  const RX::UniChar stored[] = {'p', 'a', 0, 'q', 0};
  EXPECT_EQ(ReadBack(WideText(stored, 5)), "pa");
}

TEST_F(WinJavaRuntimeLibraryImplLocationTextTest, EmptyTextsMakeAnEmptyPath) {
  EXPECT_EQ(ReadBack(WideText()), "");
  EXPECT_EQ(ReadBack(WideText(1, 0)), "");
}

TEST_F(WinJavaRuntimeLibraryImplLocationTextTest, HalfAUnitAtTheEndIsNoText) {
  system.SetBytes(Key, "RuntimeLib", std::string("p\0a\0q", 5));
  EXPECT_EQ(PathOf(Default, RX_TEXT("1.5.0")), "pa");
  system.SetBytes(Key, "RuntimeLib", "q");
  EXPECT_EQ(PathOf(Default, RX_TEXT("1.5.0")), "");
}

TEST_F(WinJavaRuntimeLibraryImplLocationTextTest, TextBeyondAsciiIsKept) {
  EXPECT_EQ(ReadBack(Widen("C:\\J\xC3\xA4va\\\xF0\x9F\x8D\xB5.dll") + RX::UniChar()),
            "C:\\J\xC3\xA4va\\\xF0\x9F\x8D\xB5.dll");
}

}  // namespace
}  // namespace tests
