// The owner of a global reference.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <mirel/base/MemoryException.h>
#include <torvan/JavaVmException.h>

#include <memory>

#include "fakes/Allocations.h"
#include "fakes/DebugOut.h"
#include "fakes/Failure.h"
#include "jni/HandleTest.h"
#include "jni/JniHelper.h"

namespace tests {
namespace {

using mirel::base::CMemoryException;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::StartsWith;
using torvan::jni::CJavaVmException;
using torvan::jni::CJniGlobalRef;

constexpr const char* attachFailure = "Failed ot attach the current thread to the underlying Java VM.";

class JniHelperTest : public HandleTest {
 protected:
  const jobject local = jvm.NewObject();
};

TEST_F(JniHelperTest, NullIsHeldWithoutAskingTheVm) {
  for (const bool makeGlobal : {false, true}) {
    const CJniGlobalRef ref(vm, nullptr, makeGlobal);
    EXPECT_EQ(ref.GetReference(), nullptr);
  }
  EXPECT_THAT(jvm.Calls(), IsEmpty());
}

TEST_F(JniHelperTest, AGlobalReferenceIsTakenAndTheGivenOneLeftAlone) {
  {
    const CJniGlobalRef ref(vm, local, true);
    EXPECT_EQ(Describe(ref.GetReference()), "global:1");
    EXPECT_THAT(jvm.TakeCalls(), ElementsAre(attach, "NewGlobalRef(local:1)"));
  }
  EXPECT_THAT(jvm.Calls(), ElementsAre(attach, "DeleteGlobalRef(global:1)"));
}

TEST_F(JniHelperTest, AnAdoptedReferenceIsDeletedButNotMade) {
  const jobject global = jvm.Env()->NewGlobalRef(local);
  jvm.TakeCalls();
  {
    const CJniGlobalRef ref(vm, global, false);
    EXPECT_EQ(ref.GetReference(), global);
    EXPECT_THAT(jvm.Calls(), IsEmpty());
  }
  EXPECT_THAT(jvm.Calls(), ElementsAre(attach, "DeleteGlobalRef(global:1)"));
}

TEST_F(JniHelperTest, AVmWithoutRoomForAReferenceIsOutOfMemory) {
  jvm.AnswerNull("NewGlobalRef(local:1)");
  Allocations allocations;

  EXPECT_EQ(FailureOf([&] { delete new CJniGlobalRef(vm, local, true); }),
            Throws<CMemoryException>("jni/JniHelper", AnyLine, nullptr));

  EXPECT_THAT(jvm.Calls(), ElementsAre(attach, "NewGlobalRef(local:1)"));
  EXPECT_EQ(allocations.Live(), 0u);
}

TEST_F(JniHelperTest, AThreadThatCannotBeAttachedGetsNoReference) {
  jvm.Return<&Invocation::AttachCurrentThread>(JNI_EDETACHED);

  EXPECT_EQ(FailureOf([&] { CJniGlobalRef(vm, local, true); }),
            Throws<CJavaVmException>("jni/JavaVm", AnyLine, attachFailure));

  EXPECT_THAT(jvm.Calls(), ElementsAre(attach));
}

TEST_F(JniHelperTest, AFailureToDeleteIsPrintedAndGoesNoFurther) {
  const jobject global = jvm.Env()->NewGlobalRef(local);
  const DebugOut debugOut;
  jvm.Return<&Invocation::AttachCurrentThread>(JNI_EDETACHED);
  jvm.TakeCalls();

  EXPECT_EQ(FailureOf([&] { CJniGlobalRef(vm, global, false); }), Failure());

  EXPECT_THAT(jvm.Calls(), ElementsAre(attach));
  EXPECT_THAT(debugOut.Text(), AllOf(StartsWith(std::string("torvan::jni::CJavaVmException: ") + attachFailure),
                                     testing::HasSubstr(" at jni/JavaVm:"), EndsWith("\n")));
  jvm.Env()->DeleteGlobalRef(global);
}

TEST_F(JniHelperTest, WhatTheVmThrowsOfTheFoundationsIsPrintedToo) {
  const DebugOut debugOut;
  jvm.On<&Jni::DeleteGlobalRef>([](jobject) { throw CMemoryException("vm", 7, nullptr, nullptr); });

  EXPECT_EQ(FailureOf([&] { CJniGlobalRef(vm, local, false); }), Failure());

  EXPECT_EQ(debugOut.Text(), "mirel::base::CMemoryException at vm:7\n");
}

TEST_F(JniHelperTest, AnyOtherExceptionPassesWithNothingKept) {
  struct Foreign {};
  const DebugOut debugOut;
  jvm.On<&Jni::DeleteGlobalRef>([](jobject) { throw Foreign(); });
  Allocations allocations;

  // The VM handle is the reference's own here: its memory tells that it went, too.
  EXPECT_THROW(delete new CJniGlobalRef(HandleOf(jvm), local, false), Foreign);

  EXPECT_EQ(allocations.Live(), 0u);
  EXPECT_EQ(debugOut.Text(), "");
}

}  // namespace
}  // namespace tests
