// How failures inside the pool reach the caller.
#include <mirel/base/IllegalArgumentException.h>
#include <mirel/base/MemoryException.h>
#include <mirel/base/NullReferenceException.h>
#include <mirel/base/win/WinSystemErrorException.h>
#include <mirel/util/NoSuchElementException.h>
#include <rx/OutOfMemoryException.h>
#include <torvan/JavaVmException.h>

#include "fakes/Allocations.h"
#include "jni/JavaRuntimeLibraryPool.h"
#include "jni/LibraryTest.h"
#include "jni/WinJavaRuntimeLibraryImpl.h"

namespace tests {
namespace {

using mirel::base::CException;
using mirel::base::CMemoryException;
using mirel::base::CNullReferenceException;
using mirel::base::CRef;
using mirel::util::CNoSuchElementException;
using torvan::jni::CJavaRuntimeLibraryImpl;
using torvan::jni::CJavaRuntimeLibraryPool;
using torvan::jni::CJavaRuntimeLibraryRef;
using torvan::jni::CWinJavaRuntimeLibraryImpl;
using Reference = CRef<CJavaRuntimeLibraryRef>;

class JavaRuntimeLibraryPoolFailureTest : public LibraryTest {
 protected:
  JavaRuntimeLibraryPoolFailureTest() {
    system.AddModule("C:\\jvm.dll", AllSymbols());
    system.SetValue("Software\\JavaSoft\\Java Runtime Environment\\1.5.0", "RuntimeLib", "C:\\jvm.dll");
  }
  ~JavaRuntimeLibraryPoolFailureTest() override { EXPECT_THAT(system.LoadedModules(), IsEmpty()); }

  static Reference GetByPath() { return Pool()->Get(RX_TEXT("C:\\jvm.dll")); }
  static Reference GetByVendor() {
    return Pool()->Get(CDynamicJavaRuntime::Sun, CDynamicJavaRuntime::Default, RX_TEXT("1.5.0"));
  }

  static CJavaRuntimeLibraryPool* Pool() { return CJavaRuntimeLibraryPool::GetInstance(); }
};

// --- Failures of Get ---

struct Inner {
  const char* name;
  void (*raise)();
  Failure raised;
  bool passes;
};

void PrintTo(const Inner& row, std::ostream* out) { *out << row.name; }

template <typename Exception>
void Raise() {
  throw Exception("inner", 11, "Inner failure.", nullptr);
}
void RaiseSystemError() {
  throw mirel::base::win::CWinSystemErrorException("inner", 11, "Inner failure.", nullptr, 31337);
}

template <typename Exception>
Inner Row(const char* name, bool passes) {
  return {name, Raise<Exception>, Throws<Exception>("inner", 11, "Inner failure."), passes};
}

class JavaRuntimeLibraryPoolFailureTranslationTest : public JavaRuntimeLibraryPoolFailureTest,
                                                     public ::testing::WithParamInterface<Inner> {
 protected:
  void ExpectTranslated(Reference (*get)(), unsigned int line) {
    const Failure expected =
        GetParam().passes
            ? GetParam().raised
            : Throws<CJavaRuntimeException>(PoolTag, line, "Failed to get the specified Java Runtime library.");
    EXPECT_EQ(FailureOf(get), expected);
    if (GetParam().passes) {
      EXPECT_EQ(debugOut.Text(), "");
    } else {
      EXPECT_THAT(debugOut.Text(), HasSubstr("Inner failure."));
    }
  }
};

INSTANTIATE_TEST_SUITE_P(
    Failures, JavaRuntimeLibraryPoolFailureTranslationTest,
    ::testing::Values(Row<CJavaRuntimeException>("RuntimeFailurePasses", true),
                      Row<CMemoryException>("MemoryFailurePasses", true),
                      Row<CNullReferenceException>("NullReference", false),
                      Row<CNoSuchElementException>("NoSuchElement", false),
                      Row<mirel::base::CIllegalArgumentException>("IllegalArgument", false),
                      Row<torvan::jni::CJavaVmException>("VmFailure", false),
                      Row<torvan::jni::CJniException>("JniFailure", false), Row<CException>("BaseFailure", false),
                      Inner{"SystemError", RaiseSystemError,
                            Throws<mirel::base::win::CWinSystemErrorException>("inner", 11, "Inner failure."), false}),
    [](const auto& row) { return row.param.name; });

TEST_P(JavaRuntimeLibraryPoolFailureTranslationTest, FailureWhileLoadingByPath) {
  system.onLoadModule = GetParam().raise;
  ExpectTranslated(GetByPath, 89);
}

TEST_P(JavaRuntimeLibraryPoolFailureTranslationTest, FailureWhileLoadingByVendor) {
  system.onLoadModule = GetParam().raise;
  ExpectTranslated(GetByVendor, 131);
}

TEST_P(JavaRuntimeLibraryPoolFailureTranslationTest, FailedGetLeavesThePoolAsItWas) {
  system.onLoadModule = GetParam().raise;
  FailureOf(GetByPath);
  FailureOf(GetByVendor);
  system.onLoadModule = nullptr;
  system.ClearLog();
  const Reference use = GetByPath();
  EXPECT_EQ(system.Log().front(), "LoadModule(C:\\jvm.dll)");
}

TEST_F(JavaRuntimeLibraryPoolFailureTest, FailureOfTheRegistryOtherThanARefusalIsTranslated) {
  system.onOpenKey = Raise<CNoSuchElementException>;
  EXPECT_EQ(FailureOf(GetByVendor),
            Throws<CJavaRuntimeException>(PoolTag, 131, "Failed to get the specified Java Runtime library."));
  EXPECT_THAT(debugOut.Text(), HasSubstr("Inner failure."));
}

TEST_F(JavaRuntimeLibraryPoolFailureTest, PrintedSystemErrorShowsItsCode) {
  system.onLoadModule = RaiseSystemError;
  FailureOf(GetByPath);
  EXPECT_THAT(debugOut.Text(), HasSubstr("31337"));
}

TEST_F(JavaRuntimeLibraryPoolFailureTest, FailuresOfOtherKindsPassUntouched) {
  system.onLoadModule = [] { throw RX::OutOfMemoryException(); };
  EXPECT_THROW(GetByPath(), RX::OutOfMemoryException);
  EXPECT_THROW(GetByVendor(), RX::OutOfMemoryException);
  EXPECT_EQ(debugOut.Text(), "");
}

// --- Memory ---

class JavaRuntimeLibraryPoolFailureMemoryTest : public JavaRuntimeLibraryPoolFailureTest,
                                                public ::testing::WithParamInterface<bool> {
 protected:
  static void GetAndExpectNoFailureButMemory() {
    const Failure failure = FailureOf([] { GetParam() ? GetByVendor() : GetByPath(); });
    if (failure == Failure()) return;
    EXPECT_TRUE(failure.type == typeid(CMemoryException)) << failure;
  }
};

INSTANTIATE_TEST_SUITE_P(Operations, JavaRuntimeLibraryPoolFailureMemoryTest, ::testing::Bool(),
                         [](const auto& row) { return row.param ? "GetByVendor" : "GetByPath"; });

TEST_P(JavaRuntimeLibraryPoolFailureMemoryTest, FirstGetThatFailsLeavesNothingLoadedAndNothingBehind) {
  const int failures = FailEachAllocation(GetAndExpectNoFailureButMemory, [this](int, const Allocations& allocations) {
    EXPECT_EQ(allocations.Live(), 0u);
    EXPECT_THAT(system.LoadedModules(), IsEmpty());
    EXPECT_EQ(debugOut.Text(), "");
  });
  // The library, its path and block; the reference and its block; the entry and its key.
  EXPECT_GE(failures, 7);
}

TEST_P(JavaRuntimeLibraryPoolFailureMemoryTest, GetOfASharedLibraryThatFailsLeavesItsCount) {
  Reference held = GetByPath();
  const int failures = FailEachAllocation(GetAndExpectNoFailureButMemory, [this](int, const Allocations& allocations) {
    EXPECT_EQ(allocations.Live(), 0u);
    EXPECT_THAT(system.LoadedModules(), ElementsAre("C:\\jvm.dll"));
    EXPECT_EQ(debugOut.Text(), "");
  });
  EXPECT_GE(failures, 3);
  held = nullptr;
  EXPECT_THAT(system.LoadedModules(), IsEmpty());
}

TEST_F(JavaRuntimeLibraryPoolFailureTest, EndingAUseNeedsNoMemory) {
  Reference use = GetByPath();
  Allocations allocations;
  allocations.Fail(1);
  use = nullptr;
  EXPECT_EQ(allocations.Made(), 0);
  EXPECT_THAT(system.LoadedModules(), IsEmpty());
}

// --- Failures at the end of a use ---

TEST_F(JavaRuntimeLibraryPoolFailureTest, ReferenceWithoutALibraryIsReportedAndSwallowed) {
  Reference use(new CJavaRuntimeLibraryRef(Pool(), CRef<CJavaRuntimeLibraryImpl>()));
  EXPECT_EQ(FailureOf([&] { use = nullptr; }), Failure());
  EXPECT_THAT(debugOut.Text(), HasSubstr("CNullReferenceException"));
  EXPECT_THAT(debugOut.Text(), HasSubstr("mirel/base/Ref"));
  EXPECT_THAT(debugOut.Text(), HasSubstr("423"));
}

TEST_F(JavaRuntimeLibraryPoolFailureTest, OperationsOfAReferenceWithoutALibraryReportANullReference) {
  CJavaRuntimeLibraryRef use(nullptr, CRef<CJavaRuntimeLibraryImpl>());
  const Failure null = Throws<CNullReferenceException>("mirel/base/Ref", 423, nullptr);
  EXPECT_EQ(FailureOf([&] { use.CreateJavaVm(nullptr, nullptr, nullptr); }), null);
  EXPECT_EQ(FailureOf([&] { use.GetCreatedJavaVms(nullptr, 0, nullptr); }), null);
}

TEST_F(JavaRuntimeLibraryPoolFailureTest, UseThatThePoolDoesNotKnowIsReportedAndItsLibraryGoes) {
  CRef<CJavaRuntimeLibraryImpl> library(new CWinJavaRuntimeLibraryImpl(RX_TEXT("C:\\jvm.dll")));
  library->Load();
  Reference use(new CJavaRuntimeLibraryRef(Pool(), library));
  library = nullptr;
  EXPECT_EQ(FailureOf([&] { use = nullptr; }), Failure());
  EXPECT_THAT(debugOut.Text(), HasSubstr("CNoSuchElementException"));
  EXPECT_THAT(debugOut.Text(), HasSubstr("498"));
  EXPECT_THAT(system.LoadedModules(), IsEmpty());
}

TEST_F(JavaRuntimeLibraryPoolFailureTest, ReferenceWithoutAPoolOnlyDropsItsLibrary) {
  CRef<CJavaRuntimeLibraryImpl> library(new CWinJavaRuntimeLibraryImpl(RX_TEXT("C:\\jvm.dll")));
  library->Load();
  { const CJavaRuntimeLibraryRef use(nullptr, library); }
  EXPECT_THAT(system.LoadedModules(), ElementsAre("C:\\jvm.dll"));
  EXPECT_EQ(debugOut.Text(), "");
}

TEST_F(JavaRuntimeLibraryPoolFailureTest, RuntimeFailureOfUnloadingIsDroppedUnprintedAndTheUseEnds) {
  Reference use = GetByPath();
  system.onUnloadModule = Raise<CJavaRuntimeException>;
  EXPECT_EQ(FailureOf([&] { use = nullptr; }), Failure());
  EXPECT_EQ(debugOut.Text(), "");
  system.onUnloadModule = nullptr;
  system.ClearLog();
  use = GetByPath();
  EXPECT_EQ(system.Log().front(), "LoadModule(C:\\jvm.dll)");
}

TEST_F(JavaRuntimeLibraryPoolFailureTest, OtherFailureOfUnloadingIsPrintedAndSwallowedAndLeavesAnEmptyEntry) {
  system.AddModule("C:\\stubborn.dll", AllSymbols());
  Reference use = Pool()->Get(RX_TEXT("C:\\stubborn.dll"));
  system.onUnloadModule = Raise<CException>;
  EXPECT_EQ(FailureOf([&] { use = nullptr; }), Failure());
  EXPECT_THAT(debugOut.Text(), HasSubstr("Inner failure."));
  system.onUnloadModule = nullptr;

  // The pool keeps the path, but not the library.
  use = Pool()->Get(RX_TEXT("C:\\stubborn.dll"));
  EXPECT_EQ(FailureOf([&] { use->CreateJavaVm(nullptr, nullptr, nullptr); }),
            Throws<CNullReferenceException>("mirel/base/Ref", 423, nullptr));
}

TEST_F(JavaRuntimeLibraryPoolFailureTest, AnEntryWithoutUsesIsEndedByAnyUseThatEnds) {
  const auto path = RX_TEXT("C:\\idle.dll");
  system.AddModule("C:\\idle.dll", AllSymbols());
  Reference use = Pool()->Get(path);
  system.onUnloadModule = Raise<CException>;
  use = nullptr;  // leaves the entry with a count of 0
  system.onUnloadModule = nullptr;

  use = Reference(new CJavaRuntimeLibraryRef(Pool(), new CWinJavaRuntimeLibraryImpl(path)));
  use = nullptr;
  system.ClearLog();
  use = Pool()->Get(path);
  EXPECT_THAT(system.Log(), ::testing::Contains("LoadModule(C:\\idle.dll)"));
}

}  // namespace
}  // namespace tests
