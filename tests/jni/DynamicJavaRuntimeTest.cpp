#include <torvan/jni/DynamicJavaRuntime.h>

#include <mirel/base/IllegalArgumentException.h>
#include <mirel/base/MemoryException.h>
#include <mirel/base/NullReferenceException.h>
#include <torvan/JavaRuntimeException.h>

#include <optional>

#include "fakes/Allocations.h"
#include "jni/JavaRuntimeImpl.h"
#include "jni/RuntimeTest.h"

namespace tests {

using namespace torvan::jni;

namespace {

using mirel::base::CMemoryException;
using mirel::base::CNullReferenceException;
using testing::ElementsAre;

using DynamicJavaRuntimeTest = RuntimeTest;

TEST_F(DynamicJavaRuntimeTest, ReturnsTheJniVersionItWasMadeWith) {
  for (const jint version : {JNI_VERSION_1_6, 0, -1, 2147483647}) EXPECT_EQ(Runtime(version).GetJniVersion(), version);
}

TEST_F(DynamicJavaRuntimeTest, LoadsTheLibraryAtThePath) {
  const CDynamicJavaRuntime runtime = Runtime();
  EXPECT_THAT(system.LoadedModules(), ElementsAre("C:\\jvm.dll"));
}

TEST_F(DynamicJavaRuntimeTest, FindsTheLibraryByVendorTypeAndVersion) {
  system.SetValue("Software\\JavaSoft\\Java Runtime Environment", "CurrentVersion", "1.4.2");
  system.SetValue("Software\\JavaSoft\\Java Runtime Environment\\1.4.2", "RuntimeLib", "C:\\jvm.dll");
  for (const RX::UniChar* version : {RX_TEXT("1.4.2"), RX_TEXT(""), static_cast<const RX::UniChar*>(nullptr)}) {
    const CDynamicJavaRuntime runtime(CDynamicJavaRuntime::Sun, CDynamicJavaRuntime::Default, version, 7);
    EXPECT_TRUE(IsLoaded());
    EXPECT_EQ(runtime.GetJniVersion(), 7);
  }
}

TEST_F(DynamicJavaRuntimeTest, FailuresOfFindingAndLoadingPassUnchanged) {
  using mirel::base::CIllegalArgumentException;
  const auto byPath = [](const RX::UniChar* path) {
    return FailureOf([path] { CDynamicJavaRuntime(path, JNI_VERSION_1_6); });
  };
  const auto invalidPath =
      Throws<CIllegalArgumentException>("jni/JavaRuntimeLibraryPool", 55, "Invalid Java Runtime library path.");
  EXPECT_EQ(byPath(nullptr), invalidPath);
  EXPECT_EQ(byPath(RX_TEXT("")), invalidPath);
  EXPECT_EQ(byPath(RX_TEXT("C:\\none.dll")),
            Throws<CJavaRuntimeException>("jni/WinJavaRuntimeLibraryImpl", 135, "Java Runtime library not found."));
  EXPECT_EQ(FailureOf([] {
              const auto type = static_cast<CDynamicJavaRuntime::VmType>(4);
              CDynamicJavaRuntime(CDynamicJavaRuntime::Sun, type, RX_TEXT("1.4"), JNI_VERSION_1_6);
            }),
            Throws<CJavaRuntimeException>("jni/WinJavaRuntimeLibraryImpl", 275, "Unknown Java Runtime type."));
}

TEST_F(DynamicJavaRuntimeTest, RunningOutOfMemoryForAHandleLeavesTheLibraryUnloaded) {
  const int failures = FailEachAllocation(
      [&] {
        const Failure failure = FailureOf([] { Runtime(); });
        EXPECT_TRUE(failure.type == typeid(void) || failure.type == typeid(CMemoryException)) << failure;
      },
      [&](int, const Allocations&) { EXPECT_FALSE(IsLoaded()); });
  EXPECT_GE(failures, 2) << "at least the object and its count";
}

TEST_F(DynamicJavaRuntimeTest, AHandleMadeWithNewLivesInTheRootAllocatorAndCanBeCounted) {
  Runtime();  // makes the pool
  const Allocations allocations;
  {
    const mirel::base::CRef<CDynamicJavaRuntime> runtime(new CDynamicJavaRuntime(RX_TEXT("C:\\jvm.dll"), 3));
    EXPECT_EQ(runtime->GetJniVersion(), 3);
    EXPECT_EQ(allocations.Taken()[0].address, &*runtime);
    EXPECT_EQ(allocations.Taken()[0].size, sizeof(CDynamicJavaRuntime));
  }
  EXPECT_FALSE(IsLoaded());
  EXPECT_EQ(allocations.Live(), 0u);
}

class EmptyRuntime : public CJavaRuntime {
 public:
  EmptyRuntime() : CJavaRuntime(mirel::base::CRef<CJavaRuntimeImpl>()) {}
};

TEST(DynamicJavaRuntimeNoneTest, AHandleWithoutARuntimeIsRefusedEverywhere) {
  EmptyRuntime runtime;
  mirel::util::CVector<CJavaVm> vms(0, 0);
  const auto refused = Throws<CNullReferenceException>("mirel/base/Ref", 423, nullptr);
  EXPECT_EQ(FailureOf([&] { runtime.GetJniVersion(); }), refused);
  EXPECT_EQ(FailureOf([&] { runtime.CreateJavaVm(options::COptions(), false); }), refused);
  EXPECT_EQ(FailureOf([&] { runtime.GetCreatedJavaVms(vms); }), refused);
}

// Who keeps the library loaded: runtime handles, their copies and the handles of their VMs, each of them alone.
class DynamicJavaRuntimeLifetimeTest : public RuntimeTest {
 protected:
  DynamicJavaRuntimeLifetimeTest() {
    runtime.emplace(Runtime());
    copy.emplace(*runtime);
    vm.emplace(runtime->CreateJavaVm(options::COptions(), false));
    EXPECT_TRUE(IsLoaded());
  }
  ~DynamicJavaRuntimeLifetimeTest() noexcept override = default;

  std::optional<CDynamicJavaRuntime> runtime;
  std::optional<CJavaRuntime> copy;
  std::optional<CJavaVm> vm;
};

TEST_F(DynamicJavaRuntimeLifetimeTest, AVmAloneKeepsTheLibrary) {
  runtime.reset();
  EXPECT_TRUE(IsLoaded());
  copy.reset();
  EXPECT_TRUE(IsLoaded());
  vm.reset();
  EXPECT_FALSE(IsLoaded());
}

TEST_F(DynamicJavaRuntimeLifetimeTest, ACopyAloneKeepsTheLibrary) {
  vm.reset();
  EXPECT_TRUE(IsLoaded());
  runtime.reset();
  EXPECT_TRUE(IsLoaded());
  copy.reset();
  EXPECT_FALSE(IsLoaded());
}

TEST_F(DynamicJavaRuntimeLifetimeTest, TheFirstHandleAloneKeepsTheLibrary) {
  copy.reset();
  EXPECT_TRUE(IsLoaded());
  vm.reset();
  EXPECT_TRUE(IsLoaded());
  runtime.reset();
  EXPECT_FALSE(IsLoaded());
}

TEST_F(DynamicJavaRuntimeLifetimeTest, AVmThatWasCollectedKeepsTheLibrary) {
  vm.reset();
  copy.reset();
  {
    mirel::util::CVector<CJavaVm> vms(0, 0);
    EXPECT_EQ(runtime->GetCreatedJavaVms(vms), 1u);
    runtime.reset();
    EXPECT_TRUE(IsLoaded());
  }
  EXPECT_FALSE(IsLoaded());
}

TEST_F(DynamicJavaRuntimeLifetimeTest, AssignmentSharesTheOtherRuntimeAndDropsTheOwn) {
  system.AddModule("C:\\other.dll", {{"JNI_CreateJavaVM", &system}, {"JNI_GetCreatedJavaVMs", &system}});
  vm.reset();
  copy.reset();
  CDynamicJavaRuntime other(RX_TEXT("C:\\other.dll"), 3);
  EXPECT_EQ(&(other = *runtime), &other);
  EXPECT_THAT(system.LoadedModules(), ElementsAre("C:\\jvm.dll"));
  EXPECT_EQ(other.GetJniVersion(), JNI_VERSION_1_6);
  runtime.reset();
  EXPECT_TRUE(IsLoaded());
}

}  // namespace

}  // namespace tests
