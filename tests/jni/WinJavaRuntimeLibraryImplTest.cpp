// Loading a runtime library and calling its entry points.
#include <mirel/base/IllegalArgumentException.h>
#include <mirel/base/MemoryException.h>

#include <memory>

#include "fakes/Allocations.h"
#include "jni/LibraryTest.h"
#include "jni/WinJavaRuntimeLibraryImpl.h"

namespace tests {
namespace {

using torvan::jni::CJavaRuntimeLibraryImpl;
using torvan::jni::CWinJavaRuntimeLibraryImpl;

constexpr const RX::UniChar* Path = RX_TEXT("C:\\Java\\jvm.dll");
constexpr const char* LoadCall = "LoadModule(C:\\Java\\jvm.dll)";
constexpr const char* FindCreateCall = "FindSymbol(C:\\Java\\jvm.dll, JNI_CreateJavaVM)";
constexpr const char* FindGetCreatedCall = "FindSymbol(C:\\Java\\jvm.dll, JNI_GetCreatedJavaVMs)";
constexpr const char* UnloadCall = "UnloadModule(C:\\Java\\jvm.dll)";

const Failure NoCreate = Throws<CJavaRuntimeException>(LocationTag, 166, "Invalid Java Runtime library.");
const Failure NoGetCreated = Throws<CJavaRuntimeException>(LocationTag, 178, "Inavalid Java Runtime library.");

class WinJavaRuntimeLibraryImplTest : public LibraryTest {
 protected:
  void AddLibrary(const FakeSystem::Symbols& symbols = AllSymbols()) { system.AddModule("C:\\Java\\jvm.dll", symbols); }
  static Failure FailureToCreate(CJavaRuntimeLibraryImpl& library) {
    return FailureOf([&] { library.CreateJavaVm(nullptr, nullptr, nullptr); });
  }
  static Failure FailureToGetCreated(CJavaRuntimeLibraryImpl& library) {
    return FailureOf([&] { library.GetCreatedJavaVms(nullptr, 0, nullptr); });
  }
};

TEST_F(WinJavaRuntimeLibraryImplTest, NullAndEmptyPathsAreRefused) {
  const Failure refused = Throws<mirel::base::CIllegalArgumentException>(LocationTag, 88, "Invalid Java Runtime path.");
  EXPECT_EQ(FailureOf([] { CWinJavaRuntimeLibraryImpl(nullptr); }), refused);
  EXPECT_EQ(FailureOf([] { CWinJavaRuntimeLibraryImpl(RX_TEXT("")); }), refused);
}

TEST_F(WinJavaRuntimeLibraryImplTest, PathIsKeptAndNothingIsAskedBeforeLoading) {
  WideText path = Widen("c:/Some Where\\..\\jvm.dll");
  CWinJavaRuntimeLibraryImpl library(path.c_str());
  path[0] = 'x';
  EXPECT_EQ(Narrow(library.GetPath()), "c:/Some Where\\..\\jvm.dll");
  EXPECT_THAT(system.Log(), IsEmpty());
}

TEST_F(WinJavaRuntimeLibraryImplTest, LoadingTakesTheModuleAndThenBothEntryPoints) {
  AddLibrary();
  CWinJavaRuntimeLibraryImpl library(Path);
  library.Load();
  EXPECT_THAT(system.Log(), ElementsAre(LoadCall, FindCreateCall, FindGetCreatedCall));
}

TEST_F(WinJavaRuntimeLibraryImplTest, LoadingALoadedLibraryDoesNothing) {
  AddLibrary();
  CWinJavaRuntimeLibraryImpl library(Path);
  library.Load();
  system.ClearLog();
  library.Load();
  EXPECT_THAT(system.Log(), IsEmpty());
}

TEST_F(WinJavaRuntimeLibraryImplTest, FileThatIsNoLibraryIsNotFound) {
  CWinJavaRuntimeLibraryImpl library(Path);
  for (int attempt = 1; attempt <= 2; ++attempt) {
    EXPECT_EQ(FailureOf([&] { library.Load(); }),
              Throws<CJavaRuntimeException>(LocationTag, 135, "Java Runtime library not found."));
  }
  EXPECT_THAT(system.Log(), ElementsAre(LoadCall, LoadCall));
  EXPECT_EQ(FailureToCreate(library), NoCreate);
}

TEST_F(WinJavaRuntimeLibraryImplTest, EmptyRegisteredPathIsNotFoundWithoutAskingTheSystem) {
  system.SetValue("Software\\JavaSoft\\Java Runtime Environment\\1.5.0", "RuntimeLib", "");
  CWinJavaRuntimeLibraryImpl library(CDynamicJavaRuntime::Sun, CDynamicJavaRuntime::Default, RX_TEXT("1.5.0"));
  system.ClearLog();
  EXPECT_EQ(FailureOf([&] { library.Load(); }),
            Throws<CJavaRuntimeException>(LocationTag, 132, "Java Runtime library not found."));
  EXPECT_THAT(system.Log(), IsEmpty());
}

TEST_F(WinJavaRuntimeLibraryImplTest, LibraryWithoutCreateIsInvalidAndStaysLoaded) {
  AddLibrary(SymbolsWithout("JNI_CreateJavaVM"));
  {
    CWinJavaRuntimeLibraryImpl library(Path);
    EXPECT_EQ(FailureOf([&] { library.Load(); }),
              Throws<CJavaRuntimeException>(LocationTag, 138, "Invalid Java Runtime libray."));
    EXPECT_THAT(system.Log(), ElementsAre(LoadCall, FindCreateCall));

    library.Load();
    EXPECT_EQ(FailureToCreate(library), NoCreate);
    EXPECT_EQ(FailureToGetCreated(library), NoGetCreated);
    EXPECT_THAT(system.Log(), ElementsAre(LoadCall, FindCreateCall));
  }
  EXPECT_THAT(system.Log(), ElementsAre(LoadCall, FindCreateCall, UnloadCall));
}

TEST_F(WinJavaRuntimeLibraryImplTest, LibraryWithoutGetCreatedIsInvalidAndStaysLoaded) {
  AddLibrary(SymbolsWithout("JNI_GetCreatedJavaVMs"));
  CWinJavaRuntimeLibraryImpl library(Path);
  EXPECT_EQ(FailureOf([&] { library.Load(); }),
            Throws<CJavaRuntimeException>(LocationTag, 140, "Invalid Java Runtime libray."));

  library.Load();
  EXPECT_EQ(FailureToGetCreated(library), NoGetCreated);
  EXPECT_EQ(FailureToCreate(library), Failure());
  EXPECT_THAT(system.Log(), ElementsAre(LoadCall, FindCreateCall, FindGetCreatedCall));

  library.Unload();
  EXPECT_THAT(system.LoadedModules(), IsEmpty());
  EXPECT_EQ(FailureToCreate(library), NoCreate);
}

TEST_F(WinJavaRuntimeLibraryImplTest, EntryPointsAreMissingBeforeLoadingAndAfterUnloading) {
  AddLibrary();
  CWinJavaRuntimeLibraryImpl library(Path);
  EXPECT_EQ(FailureToCreate(library), NoCreate);
  EXPECT_EQ(FailureToGetCreated(library), NoGetCreated);
  library.Load();
  EXPECT_EQ(FailureToCreate(library), Failure());
  EXPECT_EQ(FailureToGetCreated(library), Failure());
  library.Unload();
  EXPECT_EQ(FailureToCreate(library), NoCreate);
  EXPECT_EQ(FailureToGetCreated(library), NoGetCreated);
}

TEST_F(WinJavaRuntimeLibraryImplTest, CreateGetsItsArgumentsAndReturnsTheStatusUnchanged) {
  AddLibrary();
  CWinJavaRuntimeLibraryImpl library(Path);
  library.Load();
  JavaVM* vm = nullptr;
  void* env = nullptr;
  int initArgs = 0;
  for (const jint status : {0, -5, 77}) {
    EntryPoints::answer = status;
    EXPECT_EQ(library.CreateJavaVm(&vm, &env, &initArgs), status);
    EXPECT_EQ(EntryPoints::lastVm, &vm);
    EXPECT_EQ(EntryPoints::lastEnv, &env);
    EXPECT_EQ(EntryPoints::lastInitArgs, &initArgs);
  }
  EntryPoints::answer = 0;
}

TEST_F(WinJavaRuntimeLibraryImplTest, GetCreatedGetsItsArgumentsAndReturnsTheStatusUnchanged) {
  AddLibrary();
  CWinJavaRuntimeLibraryImpl library(Path);
  library.Load();
  JavaVM* buffer[3] = {};
  jsize count = 0;
  for (const jint status : {0, -1}) {
    EntryPoints::answer = status;
    EXPECT_EQ(library.GetCreatedJavaVms(buffer, 3, &count), status);
    EXPECT_EQ(EntryPoints::lastVm, buffer);
    EXPECT_EQ(EntryPoints::lastBufferLength, 3);
    EXPECT_EQ(EntryPoints::lastCount, &count);
  }
  EntryPoints::answer = 0;
}

TEST_F(WinJavaRuntimeLibraryImplTest, UnloadingAnUnloadedLibraryDoesNothing) {
  AddLibrary();
  CWinJavaRuntimeLibraryImpl library(Path);
  library.Unload();
  EXPECT_THAT(system.Log(), IsEmpty());
  library.Load();
  library.Unload();
  system.ClearLog();
  library.Unload();
  EXPECT_THAT(system.Log(), IsEmpty());
}

TEST_F(WinJavaRuntimeLibraryImplTest, UnloadedLibraryCanBeLoadedAgain) {
  AddLibrary();
  CWinJavaRuntimeLibraryImpl library(Path);
  library.Load();
  library.Unload();
  system.ClearLog();
  library.Load();
  EXPECT_THAT(system.Log(), ElementsAre(LoadCall, FindCreateCall, FindGetCreatedCall));
}

TEST_F(WinJavaRuntimeLibraryImplTest, DestructionUnloadsOnce) {
  AddLibrary();
  {
    CWinJavaRuntimeLibraryImpl loaded(Path);
    loaded.Load();
    CWinJavaRuntimeLibraryImpl unloaded(Path);
    system.ClearLog();
  }
  EXPECT_THAT(system.Log(), ElementsAre(UnloadCall));
}

TEST_F(WinJavaRuntimeLibraryImplTest, DestructionThroughTheBaseUnloads) {
  AddLibrary();
  std::unique_ptr<CJavaRuntimeLibraryImpl> library(new CWinJavaRuntimeLibraryImpl(Path));
  library->Load();
  library.reset();
  EXPECT_THAT(system.LoadedModules(), IsEmpty());
}

TEST_F(WinJavaRuntimeLibraryImplTest, MemoryFailureWhileMadeLeavesNothingBehind) {
  const int failures = FailEachAllocation(
      [&] {
        const Failure failure = FailureOf([] { delete new CWinJavaRuntimeLibraryImpl(Path); });
        if (failure == Failure()) return;
        EXPECT_TRUE(failure.type == typeid(mirel::base::CMemoryException)) << failure;
      },
      [](int, const Allocations& allocations) { EXPECT_EQ(allocations.Live(), 0u); });
  EXPECT_EQ(failures, 2);
}

}  // namespace
}  // namespace tests
