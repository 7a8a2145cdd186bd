#include <mirel/base/MemoryException.h>
#include <mirel/base/NullReferenceException.h>
#include <torvan/JavaRuntimeException.h>

#include "fakes/Allocations.h"
#include "fakes/JvmTest.h"
#include "jni/DynamicJavaRuntimeImpl.h"
#include "jni/RuntimeTest.h"

namespace tests {

using namespace torvan::jni;

namespace {

using mirel::base::CMemoryException;
using mirel::base::CNullReferenceException;
using mirel::base::CRef;
using testing::ElementsAre;

using Vms = mirel::util::CVector<CJavaVm>;

class DynamicJavaRuntimeImplCreatedTest : public RuntimeTest {
 protected:
  ~DynamicJavaRuntimeImplCreatedTest() noexcept override = default;

  // Lets the runtime answer its two questions with these counts and the second with the VMs of `machines`.
  void Answer(jsize first, jsize second) {
    library.list = [=](JavaVM** buffer, jsize length, jsize* count) {
      lengths.push_back(length);
      for (jsize i = 0; i < length; ++i) buffer[i] = machines[static_cast<std::size_t>(i)].Vm();
      *count = lengths.size() == 1 ? first : second;
      return JNI_OK;
    };
  }

  static bool IsOf(const CJavaVm& vm, FakeJvm& machine) { return vm == HandleOf(machine); }

  CDynamicJavaRuntime runtime = Runtime();
  FakeJvm machines[3];
  std::vector<jsize> lengths;
  Vms vms{0, 0};
};

TEST_F(DynamicJavaRuntimeImplCreatedTest, WithoutAVmTheVectorStaysAsItIs) {
  vms.Add(HandleOf(machines[0]));
  Answer(0, 3);
  EXPECT_EQ(runtime.GetCreatedJavaVms(vms), 0u);
  EXPECT_EQ(vms.GetSize(), 1u);
  EXPECT_THAT(lengths, ElementsAre(0)) << "the list is not asked for";
}

TEST_F(DynamicJavaRuntimeImplCreatedTest, ACountBelowZeroIsReturnedAsItCame) {
  Answer(-1, 3);
  EXPECT_EQ(runtime.GetCreatedJavaVms(vms), 0xFFFFFFFFu);
  EXPECT_EQ(vms.GetSize(), 0u);
  EXPECT_THAT(lengths, ElementsAre(0));
}

TEST_F(DynamicJavaRuntimeImplCreatedTest, EveryVmIsAppendedInOrder) {
  Answer(3, 3);
  EXPECT_EQ(runtime.GetCreatedJavaVms(vms), 3u);
  EXPECT_THAT(lengths, ElementsAre(0, 3));
  ASSERT_EQ(vms.GetSize(), 3u);
  for (unsigned int i = 0; i < 3; ++i) EXPECT_TRUE(IsOf(vms[i], machines[i])) << i;
}

TEST_F(DynamicJavaRuntimeImplCreatedTest, AskingTwiceAppendsTwiceAndTheHandlesAreEqual) {
  Answer(1, 1);
  EXPECT_EQ(runtime.GetCreatedJavaVms(vms), 1u);
  lengths.clear();
  EXPECT_EQ(runtime.GetCreatedJavaVms(vms), 1u);
  ASSERT_EQ(vms.GetSize(), 2u);
  EXPECT_TRUE(vms[0] == vms[1]);
}

TEST_F(DynamicJavaRuntimeImplCreatedTest, AVmWhoseHandlesAreGoneIsFoundAgain) {
  { const CJavaVm vm = runtime.CreateJavaVm(options::COptions(), false); }
  EXPECT_EQ(runtime.GetCreatedJavaVms(vms), 1u);
  ASSERT_EQ(vms.GetSize(), 1u);
  EXPECT_TRUE(IsOf(vms[0], jvm));
}

struct SecondCountRow {
  const char* name;
  jsize count;
  unsigned int result;
  unsigned int appended;
};

class DynamicJavaRuntimeImplCreatedSecondCountTest : public DynamicJavaRuntimeImplCreatedTest,
                                                     public testing::WithParamInterface<SecondCountRow> {};

TEST_P(DynamicJavaRuntimeImplCreatedSecondCountTest, IsReturnedAndOnlyTheBufferIsRead) {
  const SecondCountRow& row = GetParam();
  Answer(2, row.count);
  EXPECT_EQ(runtime.GetCreatedJavaVms(vms), row.result);
  EXPECT_THAT(lengths, ElementsAre(0, 2));
  EXPECT_EQ(vms.GetSize(), row.appended);
}

INSTANTIATE_TEST_SUITE_P(Counts, DynamicJavaRuntimeImplCreatedSecondCountTest,
                         testing::Values(SecondCountRow{"Same", 2, 2, 2}, SecondCountRow{"Smaller", 1, 1, 1},
                                         SecondCountRow{"Bigger", 3, 3, 2},
                                         SecondCountRow{"Huge", 2147483647, 2147483647, 2},
                                         SecondCountRow{"Zero", 0, 0, 0},
                                         SecondCountRow{"Negative", -1, 0xFFFFFFFF, 0}),
                         [](const auto& row) { return row.param.name; });

TEST_F(DynamicJavaRuntimeImplCreatedTest, AStatusOfTheCountIsReported) {
  library.list = [](JavaVM**, jsize, jsize* count) {
    *count = 1;
    return JNI_ERR;
  };
  EXPECT_EQ(
      FailureOf([&] { runtime.GetCreatedJavaVms(vms); }),
      Throws<CJavaRuntimeException>("jni/DynamicJavaRuntimeImpl", 87, "Failed to get the number of created Java VMs."));
  EXPECT_EQ(vms.GetSize(), 0u);
}

TEST_F(DynamicJavaRuntimeImplCreatedTest, AStatusOfTheListIsReportedAndTheBufferIsFreed) {
  library.list = [](JavaVM** buffer, jsize, jsize* count) {
    *count = 2;
    return buffer == nullptr ? JNI_OK : 1;
  };
  const Allocations allocations;
  EXPECT_EQ(
      FailureOf([&] { runtime.GetCreatedJavaVms(vms); }),
      Throws<CJavaRuntimeException>("jni/DynamicJavaRuntimeImpl", 100, "Failed to get the list of created Java VMs."));
  EXPECT_EQ(vms.GetSize(), 0u);
  EXPECT_EQ(allocations.Live(), 0u);
}

TEST_F(DynamicJavaRuntimeImplCreatedTest, WhatTheRuntimeThrowsPassesAndTheBufferIsFreed) {
  library.list = [](JavaVM** buffer, jsize, jsize* count) -> jint {
    if (buffer != nullptr) throw 42;
    *count = 2;
    return JNI_OK;
  };
  const Allocations allocations;
  EXPECT_THROW(runtime.GetCreatedJavaVms(vms), int);
  EXPECT_EQ(allocations.Live(), 0u);
}

TEST_F(DynamicJavaRuntimeImplCreatedTest, WithoutMemoryForTheBufferTheListIsNotAskedFor) {
  Answer(2, 2);
  Allocations allocations;
  allocations.Fail(1);
  EXPECT_EQ(FailureOf([&] { runtime.GetCreatedJavaVms(vms); }),
            Throws<CMemoryException>("jni/DynamicJavaRuntimeImpl", 95, nullptr));
  EXPECT_THAT(lengths, ElementsAre(0));
}

TEST_F(DynamicJavaRuntimeImplCreatedTest, RunningOutOfMemoryKeepsTheVmsAppendedSoFarAndNothingElse) {
  const int failures = FailEachAllocation(
      [&] {
        lengths.clear();
        Answer(3, 3);
        Vms collected(0, 1);
        const Failure failure = FailureOf([&] { runtime.GetCreatedJavaVms(collected); });
        EXPECT_TRUE(failure.type == typeid(void) || failure.type == typeid(CMemoryException)) << failure;
        EXPECT_EQ(collected.GetSize() == 3, failure.type == typeid(void));
      },
      [](int, const Allocations& allocations) { EXPECT_EQ(allocations.Live(), 0u); });
  EXPECT_EQ(failures, 1 + 3 * 3) << "the buffer; for each VM its object, the count and the vector's place";
}

TEST_F(DynamicJavaRuntimeImplCreatedTest, WithoutALibraryItIsRefused) {
  const FakeRuntime handle;
  const auto refused = Throws<CNullReferenceException>("mirel/base/Ref", 423, nullptr);
  CDynamicJavaRuntimeImpl noReference(JNI_VERSION_1_6, CRef<CJavaRuntimeLibraryRef>());
  EXPECT_EQ(FailureOf([&] { noReference.GetCreatedJavaVms(handle, vms); }), refused);
  CDynamicJavaRuntimeImpl noLibrary(JNI_VERSION_1_6,
                                    new CJavaRuntimeLibraryRef(nullptr, CRef<CJavaRuntimeLibraryImpl>()));
  EXPECT_EQ(FailureOf([&] { noLibrary.GetCreatedJavaVms(handle, vms); }), refused);
}

}  // namespace

}  // namespace tests
