// Handles of objects: who owns the reference, and what can be asked of any object.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <mirel/base/MemoryException.h>
#include <torvan/JavaVmException.h>
#include <torvan/jni/JavaString.h>

#include <cstring>
#include <optional>

#include "fakes/Allocations.h"
#include "fakes/Failure.h"
#include "jni/HandleTest.h"

namespace tests {
namespace {

using mirel::base::CMemoryException;
using mirel::base::CNull;
using testing::ElementsAre;
using testing::IsEmpty;
using torvan::jni::CJavaObject;
using torvan::jni::CJavaVmException;

std::string Reference(const CJavaObject& object) { return Describe(static_cast<jobject>(object)); }

class JavaObjectTest : public HandleTest {};

TEST_F(JavaObjectTest, HandlesAreLaidOutAsHostsWereCompiled) {
  const CJavaObject object = NewObject();
  jobject last = nullptr;
  JavaVM* beforeLast = nullptr;

  // The virtual table, the holder (two pointers), the VM handle (three), the reference.
  ASSERT_EQ(sizeof(CJavaObject), 7 * sizeof(void*));
  EXPECT_EQ(sizeof(torvan::jni::CJavaClass), sizeof(CJavaObject));
  EXPECT_EQ(sizeof(torvan::jni::CJavaString), sizeof(CJavaObject));
  const auto* const bytes = reinterpret_cast<const unsigned char*>(&object);
  std::memcpy(&beforeLast, bytes + 5 * sizeof(void*), sizeof(beforeLast));
  std::memcpy(&last, bytes + 6 * sizeof(void*), sizeof(last));
  EXPECT_EQ(beforeLast, jvm.Vm());
  EXPECT_EQ(last, static_cast<jobject>(object));
}

TEST_F(JavaObjectTest, AHandleWorksWithItsOwnGlobalReference) {
  {
    const Object object(vm, jvm.NewObject());
    EXPECT_EQ(Reference(object), "global:1");
    EXPECT_THAT(jvm.TakeCalls(), ElementsAre(attach, "NewGlobalRef(local:1)"));
  }
  EXPECT_THAT(jvm.Calls(), ElementsAre(attach, "DeleteGlobalRef(global:1)"));
}

TEST_F(JavaObjectTest, AHandleCanAdoptAGlobalReference) {
  const jobject global = jvm.Env()->NewGlobalRef(jvm.NewObject());
  jvm.TakeCalls();
  {
    const Object object(vm, global, false);
    EXPECT_EQ(Reference(object), "global:1");
    EXPECT_THAT(jvm.Calls(), IsEmpty());
  }
  EXPECT_THAT(jvm.Calls(), ElementsAre(attach, "DeleteGlobalRef(global:1)"));
}

TEST_F(JavaObjectTest, ANullHandleTakesNothing) {
  const Allocations allocations;
  for (const bool makeGlobal : {false, true}) {
    const Object null(vm, nullptr, makeGlobal);
    const CJavaObject copy = null;
    EXPECT_EQ(static_cast<jobject>(copy), nullptr);
  }
  EXPECT_EQ(allocations.Made(), 0);
  EXPECT_THAT(jvm.Calls(), IsEmpty());
}

TEST_F(JavaObjectTest, CopyingMakesNoJniCallAndTheLastCopyDeletesTheReference) {
  std::optional<CJavaObject> first(NewObject());
  const Allocations allocations;
  std::optional<CJavaObject> second(*first);

  EXPECT_EQ(Reference(*second), "global:1");
  first.reset();
  EXPECT_THAT(jvm.Calls(), IsEmpty());
  EXPECT_EQ(allocations.Made(), 0);

  second.reset();
  EXPECT_THAT(jvm.Calls(), ElementsAre(attach, "DeleteGlobalRef(global:1)"));
}

TEST_F(JavaObjectTest, AssignmentDropsTheOwnReferenceAndSharesTheOther) {
  CJavaObject object = NewObject();
  {
    const CJavaObject other = NewObject();
    object = other;
    EXPECT_THAT(jvm.TakeCalls(), ElementsAre(attach, "DeleteGlobalRef(global:1)"));
  }
  EXPECT_EQ(Reference(object), "global:2");
  EXPECT_THAT(jvm.Calls(), IsEmpty());
  EXPECT_EQ(jvm.LiveGlobals(), 1u);
}

TEST_F(JavaObjectTest, AssignmentOfNullDropsTheOwnReference) {
  CJavaObject object = NewObject();

  object = Object(vm, nullptr);

  EXPECT_TRUE(object == CNull());
  EXPECT_THAT(jvm.Calls(), ElementsAre(attach, "DeleteGlobalRef(global:1)"));
}

TEST_F(JavaObjectTest, AssignmentToItselfOrToACopyChangesNothing) {
  CJavaObject object = NewObject();
  CJavaObject copy = object;

  object = *&object;
  copy = object;

  EXPECT_EQ(Reference(object), "global:1");
  EXPECT_EQ(Reference(copy), "global:1");
  EXPECT_THAT(jvm.Calls(), IsEmpty());
}

TEST_F(JavaObjectTest, AssignmentTakesTheVmToo) {
  FakeJvm other;
  other.AnswerAll();
  {
    CJavaObject object = NewObject();
    const Object stranger(HandleOf(other), other.NewObject());
    jvm.TakeCalls();
    other.TakeCalls();

    object = stranger;
    EXPECT_THAT(jvm.TakeCalls(), ElementsAre(attach, "DeleteGlobalRef(global:1)"));

    other.Return<&Jni::IsInstanceOf>(JNI_TRUE);
    EXPECT_TRUE(object.IsInstanceOf("C"));
    EXPECT_THAT(other.Calls(), ElementsAre(attach, "FindClass(\"C\")", "IsInstanceOf(global:1, local:2)"));
    EXPECT_THAT(jvm.Calls(), IsEmpty());
  }
  EXPECT_EQ(other.LiveGlobals(), 0u);
}

TEST_F(JavaObjectTest, AnAssignmentIsDoneWhateverTheVmThrowsOfTheOldReference) {
  struct Foreign {};
  FakeJvm otherVm;
  otherVm.AnswerAll();
  {
    CJavaObject object = NewObject();
    const jobject old = object;
    otherVm.NewObject();  // so that the references of the two VMs do not look alike
    const Object other(HandleOf(otherVm), otherVm.NewObject());
    otherVm.TakeCalls();
    jvm.On<&Jni::DeleteGlobalRef>([](jobject) { throw Foreign(); });

    EXPECT_THROW(object = other, Foreign);

    EXPECT_EQ(Reference(object), "global:2");
    otherVm.Return<&Jni::IsInstanceOf>(JNI_TRUE);
    EXPECT_TRUE(object.IsInstanceOf("C"));
    EXPECT_THAT(otherVm.Calls(), ElementsAre(attach, "FindClass(\"C\")", "IsInstanceOf(global:2, local:3)"));
    jvm.AnswerGlobals();
    jvm.Env()->DeleteGlobalRef(old);
  }
  EXPECT_EQ(otherVm.LiveGlobals(), 0u);
}

TEST_F(JavaObjectTest, RunningOutOfMemoryLeavesNoReferenceBehind) {
  const jobject local = jvm.NewObject();
  Failure failure;
  std::vector<Failure> failures;

  const int runs = FailEachAllocation([&] { failure = FailureOf([&] { Object(vm, local); }); },
                                      [&](int, const Allocations& allocations) {
                                        failures.push_back(failure);
                                        EXPECT_EQ(allocations.Live(), 0u);
                                        EXPECT_EQ(jvm.LiveGlobals(), 0u);
                                      });

  ASSERT_EQ(runs, 2);
  EXPECT_EQ(failures[0].type, typeid(CMemoryException));
  EXPECT_EQ(failures[1], Throws<CMemoryException>("mirel/base/Ref", 279, nullptr));
}

TEST_F(JavaObjectTest, AVmWithoutRoomForAReferenceIsOutOfMemory) {
  const jobject local = jvm.NewObject();
  jvm.AnswerNull("NewGlobalRef(local:1)");

  EXPECT_EQ(FailureOf([&] { Object(vm, local); }), Throws<CMemoryException>("jni/JniHelper", AnyLine, nullptr));
}

TEST_F(JavaObjectTest, NullIsToldByBothFormsOfTheNullMarker) {
  const CJavaObject object = NewObject();
  const Object null(vm, nullptr);
  CNull* const nullPointer = nullptr;

  EXPECT_TRUE(null == CNull());
  EXPECT_FALSE(null != CNull());
  EXPECT_TRUE(null == nullPointer);
  EXPECT_FALSE(null != nullPointer);
  EXPECT_FALSE(object == CNull());
  EXPECT_TRUE(object != CNull());
  EXPECT_FALSE(object == nullPointer);
  EXPECT_TRUE(object != nullPointer);
  EXPECT_THAT(jvm.Calls(), IsEmpty());
}

TEST_F(JavaObjectTest, AHandleEqualsItselfWithoutAskingTheVm) {
  const CJavaObject object = NewObject();

  EXPECT_TRUE(object == object);
  EXPECT_FALSE(object != object);

  EXPECT_THAT(jvm.Calls(), IsEmpty());
}

TEST_F(JavaObjectTest, HandlesOfDifferentVmsAreNeverEqual) {
  FakeJvm other;
  const CJavaObject object = NewObject();
  const Object stranger(HandleOf(other), nullptr);
  const Object null(vm, nullptr);

  EXPECT_FALSE(object == stranger);
  EXPECT_TRUE(object != stranger);
  EXPECT_FALSE(null == stranger);

  EXPECT_THAT(jvm.Calls(), IsEmpty());
  EXPECT_THAT(other.Calls(), IsEmpty());
}

struct SameObject {
  const char* name;
  jboolean answer;
  bool equal;
};

class JavaObjectEqualityTest : public JavaObjectTest, public testing::WithParamInterface<SameObject> {};

INSTANTIATE_TEST_SUITE_P(Answers, JavaObjectEqualityTest,
                         testing::Values(SameObject{"True", JNI_TRUE, true}, SameObject{"False", JNI_FALSE, false},
                                         SameObject{"NeitherIsFalse", 2, false}),
                         [](const auto& test) { return test.param.name; });

TEST_P(JavaObjectEqualityTest, IsWhatTheVmSaysOfTheTwoReferences) {
  const CJavaObject left = NewObject();
  const CJavaObject right = NewObject();
  const Object null(vm, nullptr);
  const Object otherNull(vm, nullptr);
  jvm.Return<&Jni::IsSameObject>(GetParam().answer);

  EXPECT_EQ(left == right, GetParam().equal);
  EXPECT_EQ(left != right, !GetParam().equal);
  EXPECT_EQ(left == null, GetParam().equal);
  EXPECT_EQ(null == otherNull, GetParam().equal);

  EXPECT_THAT(jvm.Calls(), ElementsAre(attach, "IsSameObject(global:1, global:2)",  //
                                       attach, "IsSameObject(global:1, global:2)",  //
                                       attach, "IsSameObject(global:1, null)",      //
                                       attach, "IsSameObject(null, null)"));
}

TEST_F(JavaObjectTest, EqualityNeedsAnAttachedThread) {
  const CJavaObject left = NewObject();
  const CJavaObject right = NewObject();
  jvm.Return<&Invocation::AttachCurrentThread>(JNI_ERR);

  EXPECT_EQ(FailureOf([&] { static_cast<void>(left == right); }),
            Throws<CJavaVmException>("jni/JavaVm", AnyLine,
                                     "Failed ot attach the current thread to the underlying Java VM."));
  jvm.AnswerAttachment();
}

}  // namespace
}  // namespace tests
