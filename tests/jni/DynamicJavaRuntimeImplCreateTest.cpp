#include <mirel/base/MemoryException.h>
#include <mirel/base/NullReferenceException.h>
#include <torvan/JavaRuntimeException.h>
#include <torvan/jni/options/CustomOption.h>
#include <torvan/jni/options/ExitHook.h>
#include <torvan/jni/options/Verbose.h>

#include "fakes/Allocations.h"
#include "fakes/JvmTest.h"
#include "fakes/KeptBlocks.h"
#include "jni/DynamicJavaRuntimeImpl.h"
#include "jni/RuntimeTest.h"

namespace tests {

using namespace torvan::jni;

namespace {

using mirel::base::CMemoryException;
using mirel::base::CNullReferenceException;
using mirel::base::CRef;
using options::COptions;
using testing::ElementsAre;
using testing::IsEmpty;

void OnExit(int) {}

class DynamicJavaRuntimeImplCreateTest : public RuntimeTest {
 protected:
  DynamicJavaRuntimeImplCreateTest() {
    options.AddOption(options::CCustomOption(RX_TEXT("-Xmx64m")));
    options.AddOption(options::CExitHook(OnExit));
    options.AddOption(options::CCustomOption(RX_TEXT("-Da=\u20AC")));
  }

  COptions options;
};

TEST_F(DynamicJavaRuntimeImplCreateTest, TheRuntimeGetsVersionOptionsAndFlag) {
  Runtime(0x00010008).CreateJavaVm(options, true);
  Runtime(-1).CreateJavaVm(COptions(), false);
  ASSERT_EQ(library.Created().size(), 2u);
  const InitArguments& first = library.Created()[0];
  EXPECT_EQ(first.version, 0x00010008);
  EXPECT_EQ(first.ignoreUnrecognized, JNI_TRUE);
  EXPECT_THAT(first.texts, ElementsAre("-Xmx64m", "exit", "-Da=\xE2\x82\xAC"));
  EXPECT_THAT(first.extraInfos, ElementsAre(nullptr, reinterpret_cast<void*>(&OnExit), nullptr));
  const InitArguments& second = library.Created()[1];
  EXPECT_EQ(second.version, -1);
  EXPECT_EQ(second.ignoreUnrecognized, JNI_FALSE);
  EXPECT_THAT(second.texts, IsEmpty());
}

TEST_F(DynamicJavaRuntimeImplCreateTest, TheHandleIsOfTheVmThatWasMade) {
  jvm.AnswerAttachment();
  CDynamicJavaRuntime runtime = Runtime();
  const CJavaVm vm = runtime.CreateJavaVm(options, false);
  EXPECT_THAT(jvm.Calls(), IsEmpty());
  EXPECT_EQ(vm.Attach(), jvm.Env());
  EXPECT_THAT(jvm.TakeCalls(), ElementsAre("AttachCurrentThread(null)"));
}

TEST_F(DynamicJavaRuntimeImplCreateTest, TheOptionArrayIsFreedWhenTheVmIsMade) {
  CDynamicJavaRuntime runtime = Runtime();
  const Allocations allocations;
  const CJavaVm plain = runtime.CreateJavaVm(COptions(), false);
  const std::size_t handle = allocations.Live();
  const CJavaVm vm = runtime.CreateJavaVm(options, false);
  EXPECT_EQ(allocations.Live(), 2 * handle);
}

TEST_F(DynamicJavaRuntimeImplCreateTest, EveryStatusButSuccessIsARefusalAndTheOptionArrayIsFreed) {
  CDynamicJavaRuntime runtime = Runtime();
  const Allocations allocations;
  for (const jint status : {JNI_ERR, JNI_EEXIST, JNI_EINVAL, 1}) {
    library.create = [=](JavaVM**, void**) { return status; };
    EXPECT_EQ(FailureOf([&] { runtime.CreateJavaVm(options, false); }),
              Throws<CJavaRuntimeException>("jni/DynamicJavaRuntimeImpl", 70,
                                            "Failed to create Java VM with the specified options."));
    EXPECT_EQ(allocations.Live(), 0u);
  }
}

TEST_F(DynamicJavaRuntimeImplCreateTest, EveryRequestReachesTheRuntime) {
  CDynamicJavaRuntime runtime = Runtime();
  const CJavaVm vm = runtime.CreateJavaVm(options, false);
  library.create = [](JavaVM**, void**) { return JNI_EEXIST; };
  EXPECT_THROW(runtime.CreateJavaVm(options, false), CJavaRuntimeException);
  EXPECT_EQ(library.Created().size(), 2u);
}

TEST_F(DynamicJavaRuntimeImplCreateTest, WhatTheRuntimeThrowsPassesAndTheOptionArrayIsFreed) {
  CDynamicJavaRuntime runtime = Runtime();
  const Allocations allocations;
  library.create = [](JavaVM**, void**) -> jint { throw 42; };
  EXPECT_THROW(runtime.CreateJavaVm(options, false), int);
  EXPECT_EQ(allocations.Live(), 0u);
}

TEST_F(DynamicJavaRuntimeImplCreateTest, RunningOutOfMemoryPassesAndLeavesNothingBehind) {
  CDynamicJavaRuntime runtime = Runtime();
  const COptions none;
  const int failures = FailEachAllocation(
      [&] {
        const Failure failure = FailureOf([&] { runtime.CreateJavaVm(none, false); });
        EXPECT_TRUE(failure.type == typeid(void) || failure.type == typeid(CMemoryException)) << failure;
      },
      [](int, const Allocations& allocations) { EXPECT_EQ(allocations.Live(), 0u); });
  EXPECT_EQ(failures, 3) << "the array, the VM's object and its count";
}

TEST_F(DynamicJavaRuntimeImplCreateTest, WithoutALibraryReferenceTheOptionArrayIsLost) {
  CDynamicJavaRuntimeImpl impl(JNI_VERSION_1_6, CRef<CJavaRuntimeLibraryRef>());
  const FakeRuntime runtime;
  const KeptBlocks blocks;
  EXPECT_EQ(FailureOf([&] { impl.CreateJavaVm(runtime, options, false); }),
            Throws<CNullReferenceException>("mirel/base/Ref", 423, nullptr));
  EXPECT_EQ(blocks.NeverGivenBack(), 4u) << "the array and three texts";
}

TEST_F(DynamicJavaRuntimeImplCreateTest, WhenAnOptionRunsOutOfMemoryTheRuntimeGetsTheArrayThatIsFreedAlready) {
  CDynamicJavaRuntime runtime = Runtime();
  const CJavaVm expected = HandleOf(jvm);
  std::vector<std::vector<std::string>> texts;
  for (int failing = 2;; ++failing) {  // the first is the array itself
    SCOPED_TRACE(failing);
    const KeptBlocks blocks(failing);
    const JavaVMOption* array = nullptr;
    int timesBefore = 0;
    library.create = [&](JavaVM** vm, void**) {
      array = library.Created().back().options;
      timesBefore = blocks.TimesGivenBack(array);
      *vm = jvm.Vm();
      return JNI_OK;
    };
    const Failure failure = FailureOf([&] { EXPECT_TRUE(runtime.CreateJavaVm(options, false) == expected); });
    if (timesBefore == 0) break;
    EXPECT_EQ(failure, Failure());
    EXPECT_EQ(timesBefore, 1);
    EXPECT_EQ(blocks.TimesGivenBack(array), 2);
    texts.push_back(library.Created().back().texts);
  }
  // Each option is rendered, given a block, and rendered again.
  ASSERT_EQ(texts.size(), 9u);
  EXPECT_THAT(texts[0], ElementsAre("(null)", "(null)", "(null)"));
  EXPECT_THAT(texts[3], ElementsAre("-Xmx64m", "(null)", "(null)"));
  EXPECT_THAT(texts[7], ElementsAre("-Xmx64m", "exit", "(null)"));
}

TEST_F(DynamicJavaRuntimeImplCreateTest, AReferenceWithoutALibraryIsRefused) {
  CDynamicJavaRuntimeImpl impl(JNI_VERSION_1_6, new CJavaRuntimeLibraryRef(nullptr, CRef<CJavaRuntimeLibraryImpl>()));
  const FakeRuntime runtime;
  const Allocations allocations;
  EXPECT_EQ(FailureOf([&] { impl.CreateJavaVm(runtime, options, false); }),
            Throws<CNullReferenceException>("mirel/base/Ref", 423, nullptr));
  EXPECT_EQ(allocations.Live(), 0u);
}

}  // namespace

}  // namespace tests
