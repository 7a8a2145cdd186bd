// Sharing of runtime libraries by path.
#include "jni/JavaRuntimeLibraryPool.h"

#include <mirel/base/IllegalArgumentException.h>

#include "jni/LibraryTest.h"

namespace tests {
namespace {

using mirel::base::CRef;
using torvan::jni::CJavaRuntimeLibraryPool;
using torvan::jni::CJavaRuntimeLibraryRef;
using Reference = CRef<CJavaRuntimeLibraryRef>;

// Every test ends its uses, so the pool of the process is empty in between.
class JavaRuntimeLibraryPoolTest : public LibraryTest {
 protected:
  JavaRuntimeLibraryPoolTest() {
    system.AddModule("C:\\jvm.dll", AllSymbols());
    system.SetValue("Software\\JavaSoft\\Java Runtime Environment\\1.5.0", "RuntimeLib", "C:\\jvm.dll");
  }
  ~JavaRuntimeLibraryPoolTest() override { EXPECT_THAT(system.LoadedModules(), IsEmpty()); }

  static Reference Get(const RX::UniChar* path = RX_TEXT("C:\\jvm.dll")) {
    return CJavaRuntimeLibraryPool::GetInstance()->Get(path);
  }
  static Reference GetRegistered(const RX::UniChar* version = RX_TEXT("1.5.0"), VmVendor vendor = Sun,
                                 VmType type = Default) {
    return CJavaRuntimeLibraryPool::GetInstance()->Get(vendor, type, version);
  }

  static constexpr const char* LoadCall = "LoadModule(C:\\jvm.dll)";
  static constexpr const char* FindCreateCall = "FindSymbol(C:\\jvm.dll, JNI_CreateJavaVM)";
  static constexpr const char* FindGetCreatedCall = "FindSymbol(C:\\jvm.dll, JNI_GetCreatedJavaVMs)";
  static constexpr const char* UnloadCall = "UnloadModule(C:\\jvm.dll)";
};

TEST_F(JavaRuntimeLibraryPoolTest, ThereIsOnePool) {
  EXPECT_NE(CJavaRuntimeLibraryPool::GetInstance(), nullptr);
  EXPECT_EQ(CJavaRuntimeLibraryPool::GetInstance(), CJavaRuntimeLibraryPool::GetInstance());
}

TEST_F(JavaRuntimeLibraryPoolTest, LibraryIsLoadedOnceAndUnloadedWithItsLastUse) {
  Reference first = Get();
  EXPECT_THAT(system.Log(), ElementsAre(LoadCall, FindCreateCall, FindGetCreatedCall));
  system.ClearLog();
  Reference second = Get();
  EXPECT_THAT(system.Log(), IsEmpty());

  first = nullptr;
  EXPECT_THAT(system.Log(), IsEmpty());
  second = nullptr;
  EXPECT_THAT(system.Log(), ElementsAre(UnloadCall));
  EXPECT_EQ(debugOut.Text(), "");
}

TEST_F(JavaRuntimeLibraryPoolTest, LibraryStaysLoadedWhicheverUseGoesFirst) {
  Reference uses[] = {Get(), Get(), Get()};
  for (const int index : {1, 2}) {
    uses[index] = nullptr;
    EXPECT_THAT(system.LoadedModules(), ElementsAre("C:\\jvm.dll"));
  }
  uses[0] = nullptr;
  EXPECT_THAT(system.LoadedModules(), IsEmpty());
}

TEST_F(JavaRuntimeLibraryPoolTest, CopiesOfAReferenceAreOneUse) {
  Reference use = Get();
  Reference copy = use;
  use = nullptr;
  EXPECT_THAT(system.LoadedModules(), ElementsAre("C:\\jvm.dll"));
  copy = nullptr;
  EXPECT_THAT(system.LoadedModules(), IsEmpty());
}

TEST_F(JavaRuntimeLibraryPoolTest, LibraryIsLoadedAgainAfterItsLastUse) {
  Get();
  system.ClearLog();
  Get();
  EXPECT_THAT(system.Log(), ElementsAre(LoadCall, FindCreateCall, FindGetCreatedCall, UnloadCall));
}

struct Spelling {
  const char* name;
  const char* path;
};

class JavaRuntimeLibraryPoolSpellingTest : public JavaRuntimeLibraryPoolTest,
                                           public ::testing::WithParamInterface<Spelling> {};

INSTANTIATE_TEST_SUITE_P(Spellings, JavaRuntimeLibraryPoolSpellingTest,
                         ::testing::Values(Spelling{"OtherLetterCase", "c:\\JVM.dll"},
                                           Spelling{"OtherSeparator", "C:/jvm.dll"},
                                           Spelling{"DetourPath", "C:\\.\\jvm.dll"}),
                         [](const auto& row) { return row.param.name; });

TEST_P(JavaRuntimeLibraryPoolSpellingTest, AreTwoLibraries) {
  const std::string spelling = GetParam().path;
  system.AddModule(spelling, AllSymbols());
  Reference one = Get();
  Reference other = Get(Widen(spelling).c_str());
  EXPECT_THAT(system.LoadedModules(), ElementsAre("C:\\jvm.dll", spelling));
  one = nullptr;
  EXPECT_THAT(system.LoadedModules(), ElementsAre(spelling));
}

TEST_F(JavaRuntimeLibraryPoolTest, RegisteredLibraryIsSharedWithItsPath) {
  Reference byPath = Get();
  Reference registered = GetRegistered();
  EXPECT_THAT(system.LoadedModules(), ElementsAre("C:\\jvm.dll"));
  byPath = nullptr;
  EXPECT_THAT(system.LoadedModules(), ElementsAre("C:\\jvm.dll"));
  Reference again = Get();
  EXPECT_THAT(system.LoadedModules(), ElementsAre("C:\\jvm.dll"));
}

TEST_F(JavaRuntimeLibraryPoolTest, RegistryIsReadOnEveryGetByVendor) {
  const Reference held = GetRegistered();
  system.ClearLog();
  GetRegistered();
  EXPECT_THAT(system.Log(),
              ElementsAre("OpenKey(HKLM, Software\\JavaSoft\\Java Runtime Environment\\1.5.0, 0x20019)",
                          "QueryValue(Software\\JavaSoft\\Java Runtime Environment\\1.5.0, RuntimeLib, 2080)",
                          "CloseKey(Software\\JavaSoft\\Java Runtime Environment\\1.5.0)"));
}

TEST_F(JavaRuntimeLibraryPoolTest, ReferenceReachesTheEntryPointsOfItsLibrary) {
  const Reference use = Get();
  JavaVM* vm = nullptr;
  void* env = nullptr;
  int initArgs = 0;
  EntryPoints::answer = -4;
  EXPECT_EQ(use->CreateJavaVm(&vm, &env, &initArgs), -4);
  EXPECT_EQ(EntryPoints::lastVm, &vm);
  EXPECT_EQ(EntryPoints::lastEnv, &env);
  EXPECT_EQ(EntryPoints::lastInitArgs, &initArgs);
  jsize count = 0;
  EXPECT_EQ(use->GetCreatedJavaVms(&vm, 1, &count), -4);
  EXPECT_EQ(EntryPoints::lastBufferLength, 1);
  EXPECT_EQ(EntryPoints::lastCount, &count);
  EntryPoints::answer = 0;
}

TEST_F(JavaRuntimeLibraryPoolTest, NullAndEmptyPathsAreIllegalArgumentsAndAreNotPrinted) {
  for (const RX::UniChar* path : {static_cast<const RX::UniChar*>(nullptr), RX_TEXT("")}) {
    EXPECT_EQ(FailureOf([&] { Get(path); }),
              Throws<mirel::base::CIllegalArgumentException>(PoolTag, 55, "Invalid Java Runtime library path."));
  }
  EXPECT_EQ(debugOut.Text(), "");
  EXPECT_THAT(system.Log(), IsEmpty());
}

TEST_F(JavaRuntimeLibraryPoolTest, FailuresOfLocationReachTheCallerUnchanged) {
  EXPECT_EQ(FailureOf([] { GetRegistered(nullptr, static_cast<VmVendor>(1)); }),
            Throws<CJavaRuntimeException>(LocationTag, 283, "Unknown Java Runtime vendor."));
  EXPECT_EQ(FailureOf([] { GetRegistered(RX_TEXT("1.4"), Sun, static_cast<VmType>(9)); }),
            Throws<CJavaRuntimeException>(LocationTag, 275, "Unknown Java Runtime type."));
  EXPECT_EQ(FailureOf([] { GetRegistered(RX_TEXT("1.5.0"), Sun, CDynamicJavaRuntime::Client); }),
            Throws<CJavaRuntimeException>(LocationTag, 246, "Invalid Client Sun JRE version."));
  EXPECT_EQ(FailureOf([] { GetRegistered(RX_TEXT("1.6.0")); }),
            Throws<CJavaRuntimeException>(LocationTag, 223, "The specified Sun JRE version is not found."));
  EXPECT_EQ(
      FailureOf([] { GetRegistered(RX_TEXT("")); }),
      Throws<CJavaRuntimeException>(LocationTag, 206, "There is not any Sun JRE installed in the current system."));
}

TEST_F(JavaRuntimeLibraryPoolTest, LibraryThatIsMissingDoesNotEnterThePool) {
  const auto get = [] { Get(RX_TEXT("C:\\late.dll")); };
  EXPECT_EQ(FailureOf(get), Throws<CJavaRuntimeException>(LocationTag, 135, "Java Runtime library not found."));
  system.AddModule("C:\\late.dll", AllSymbols());
  system.ClearLog();
  EXPECT_EQ(FailureOf(get), Failure());
  EXPECT_EQ(system.Log().front(), "LoadModule(C:\\late.dll)");
}

TEST_F(JavaRuntimeLibraryPoolTest, LibraryWithoutAnEntryPointIsUnloadedAndDoesNotEnterThePool) {
  system.AddModule("C:\\half.dll", SymbolsWithout("JNI_GetCreatedJavaVMs"));
  system.SetValue("Software\\JavaSoft\\Java Runtime Environment\\half", "RuntimeLib", "C:\\half.dll");
  for (int attempt = 1; attempt <= 2; ++attempt) {
    system.ClearLog();
    EXPECT_EQ(FailureOf([] { Get(RX_TEXT("C:\\half.dll")); }),
              Throws<CJavaRuntimeException>(LocationTag, 140, "Invalid Java Runtime libray."));
    EXPECT_THAT(system.Log(),
                ElementsAre("LoadModule(C:\\half.dll)", "FindSymbol(C:\\half.dll, JNI_CreateJavaVM)",
                            "FindSymbol(C:\\half.dll, JNI_GetCreatedJavaVMs)", "UnloadModule(C:\\half.dll)"));
    EXPECT_EQ(FailureOf([] { GetRegistered(RX_TEXT("half")); }),
              Throws<CJavaRuntimeException>(LocationTag, 140, "Invalid Java Runtime libray."));
  }
  EXPECT_EQ(debugOut.Text(), "");
}

TEST_F(JavaRuntimeLibraryPoolTest, EmptyRegisteredPathIsNotFound) {
  system.SetValue("Software\\JavaSoft\\Java Runtime Environment\\empty", "RuntimeLib", "");
  EXPECT_EQ(FailureOf([] { GetRegistered(RX_TEXT("empty")); }),
            Throws<CJavaRuntimeException>(LocationTag, 132, "Java Runtime library not found."));
}

}  // namespace
}  // namespace tests
