// Handles of classes: what they add to those of objects.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <mirel/base/MemoryException.h>
#include <mirel/base/NullReferenceException.h>
#include <torvan/JavaException.h>
#include <torvan/JavaVmException.h>

#include <functional>

#include "fakes/Allocations.h"
#include "fakes/Failure.h"
#include "fakes/WideText.h"
#include "jni/HandleTest.h"

namespace tests {
namespace {

using mirel::base::CMemoryException;
using mirel::base::CNullReferenceException;
using testing::ElementsAre;
using testing::IsEmpty;
using torvan::jni::CJavaClass;
using torvan::jni::CJavaException;
using torvan::jni::CJavaObject;
using torvan::jni::CJavaVmException;

class JavaClassTest : public HandleTest {
 protected:
  // Scripts allocation and construction to return the object local:2.
  void AnswerCreation() {
    const jobject made = jvm.NewObject();
    jvm.Return<&Jni::AllocObject>(made);
    jvm.Return<&Jni::NewObjectV>(made);
  }
};

TEST_F(JavaClassTest, CopiesShareOneGlobalReference) {
  {
    const CJavaClass javaClass = NewClass();
    CJavaClass copy = javaClass;
    copy = javaClass;
    const CJavaObject object = copy;

    EXPECT_EQ(Describe(static_cast<jclass>(copy)), "global:1");
    EXPECT_EQ(Describe(static_cast<jobject>(object)), "global:1");
    EXPECT_THAT(jvm.Calls(), IsEmpty());
  }
  EXPECT_THAT(jvm.Calls(), ElementsAre(attach, "DeleteGlobalRef(global:1)"));
}

TEST_F(JavaClassTest, AStaticDoubleIsReadAsACharAndWidened) {
  const CJavaClass javaClass = NewClass();
  jvm.Return<&Jni::GetStaticCharField>(0xFFFE);

  EXPECT_EQ(javaClass.GetStaticDoubleField("pi", "D"), 65534.0);
  EXPECT_EQ(javaClass.GetStaticDoubleField(RX_TEXT("pi"), RX_TEXT("D")), 65534.0);
}

TEST_F(JavaClassTest, AllocObjectReturnsAHandleOfTheNewObject) {
  const CJavaClass javaClass = NewClass();
  AnswerCreation();
  {
    const CJavaObject object = javaClass.AllocObject();
    EXPECT_EQ(Describe(static_cast<jobject>(object)), "global:2");
    EXPECT_THAT(jvm.TakeCalls(),
                ElementsAre(attach, "AllocObject(global:1)", "ExceptionOccurred", attach, "NewGlobalRef(local:2)"));
  }
  EXPECT_THAT(jvm.TakeCalls(), ElementsAre(attach, "DeleteGlobalRef(global:2)"));
}

TEST_F(JavaClassTest, NewObjectRunsTheConstructorOfTheSignature) {
  const CJavaClass javaClass = NewClass();
  AnswerCreation();
  jobject argument = jvm.NewObject();

  const CJavaObject narrow = javaClass.NewObject("(ILjava/lang/Object;D)V", 7, argument, 0.5);
  EXPECT_EQ(Describe(static_cast<jobject>(narrow)), "global:2");
  EXPECT_THAT(jvm.TakeCalls(), ElementsAre(attach, "GetMethodID(global:1, \"<init>\", \"(ILjava/lang/Object;D)V\")",
                                           "NewObjectV(global:1, method:<init>, 7, local:3, 0.5)", "ExceptionOccurred",
                                           attach, "NewGlobalRef(local:2)"));

  const CJavaObject wide = javaClass.NewObject(RX_TEXT("(ILjava/lang/Object;D)V"), 7, argument, 0.5);
  EXPECT_EQ(Describe(static_cast<jobject>(wide)), "global:2");
  EXPECT_THAT(jvm.TakeCalls(), ElementsAre(attach, "GetMethodID(global:1, \"<init>\", \"(ILjava/lang/Object;D)V\")",
                                           "NewObjectV(global:1, method:<init>, 7, local:3, 0.5)", "ExceptionOccurred",
                                           attach, "NewGlobalRef(local:2)"));
}

TEST_F(JavaClassTest, AWideSignatureIsConvertedInTheAttachedThread) {
  const CJavaClass javaClass = NewClass();
  const WideText signature = Widen("(L" + std::string(300, 'x') + ";)V");
  Allocations allocations;
  allocations.Fail(1);

  EXPECT_EQ(FailureOf([&] { javaClass.NewObject(signature.c_str()); }).type, typeid(CMemoryException));

  EXPECT_THAT(jvm.Calls(), ElementsAre(attach));
  EXPECT_EQ(allocations.Live(), 0u);
}

TEST_F(JavaClassTest, AConstructorThatIsNotFoundIsReportedWithTheJavaErrorPending) {
  const CJavaClass javaClass = NewClass();
  const jthrowable error = jvm.Throw({"java.lang.NoSuchMethodError", "<init>", {}});
  const auto notFound = Throws<CJavaVmException>("jni/JavaClass", AnyLine, "The specified constructor was not found.");
  const char* const lookup = "GetMethodID(global:1, \"<init>\", \"()V\")";

  jvm.AnswerNull(lookup);
  EXPECT_EQ(FailureOf([&] { javaClass.NewObject("()V"); }), notFound);
  EXPECT_THAT(jvm.TakeCalls(), ElementsAre(attach, lookup));

  jvm.AnswerNull(lookup);
  EXPECT_EQ(FailureOf([&] { javaClass.NewObject(RX_TEXT("()V")); }), notFound);
  EXPECT_THAT(jvm.TakeCalls(), ElementsAre(attach, lookup));

  EXPECT_EQ(jvm.Pending(), error);
}

// The three ways to make an object of a class.
struct Creation {
  const char* name;
  std::function<CJavaObject(const CJavaClass&)> create;
  const char* lastStep;
};

class JavaClassCreationTest : public JavaClassTest, public testing::WithParamInterface<Creation> {
 protected:
  CJavaObject Create(const CJavaClass& javaClass) { return GetParam().create(javaClass); }
};

INSTANTIATE_TEST_SUITE_P(
    All, JavaClassCreationTest,
    testing::Values(Creation{"AllocObject", [](const CJavaClass& c) { return c.AllocObject(); },
                             "AllocObject(global:1)"},
                    Creation{"NewObjectNarrow", [](const CJavaClass& c) { return c.NewObject("()V"); },
                             "NewObjectV(global:1, method:<init>)"},
                    Creation{"NewObjectWide", [](const CJavaClass& c) { return c.NewObject(RX_TEXT("()V")); },
                             "NewObjectV(global:1, method:<init>)"}),
    [](const auto& test) { return test.param.name; });

TEST_P(JavaClassCreationTest, RefusesANullClassWithoutAskingTheVm) {
  CJavaClass javaClass = NewClass();
  MakeNull(javaClass, vm);
  jvm.TakeCalls();

  EXPECT_EQ(FailureOf([&] { Create(javaClass); }), Throws<CNullReferenceException>("jni/JavaClass", AnyLine, nullptr));

  EXPECT_THAT(jvm.Calls(), IsEmpty());
}

TEST_P(JavaClassCreationTest, IsOutOfMemoryWhenNoObjectWasMadeWhateverIsPending) {
  const CJavaClass javaClass = NewClass();
  AnswerCreation();
  const jthrowable pending = jvm.Throw({"java.lang.InstantiationException", "abstract", {}});
  jvm.AnswerNull(GetParam().lastStep);

  EXPECT_EQ(FailureOf([&] { Create(javaClass); }), Throws<CMemoryException>("jni/JavaClass", AnyLine, nullptr));

  EXPECT_EQ(jvm.Calls().back(), GetParam().lastStep);
  EXPECT_EQ(jvm.Pending(), pending);
}

TEST_P(JavaClassCreationTest, TurnsAPendingJavaExceptionIntoACJavaException) {
  const CJavaClass javaClass = NewClass();
  AnswerCreation();
  const jthrowable pending = jvm.Throw({"java.lang.Error", "bad", {}});

  EXPECT_EQ(FailureOf([&] { Create(javaClass); }), Throws<CJavaException>(nullptr, 0, "Exception thrown by Java."));

  EXPECT_EQ(jvm.Pending(), pending);
  EXPECT_EQ(jvm.LiveGlobals(), 1u);
}

TEST_P(JavaClassCreationTest, NeedsAnAttachedThread) {
  const CJavaClass javaClass = NewClass();
  jvm.Return<&Invocation::AttachCurrentThread>(JNI_ERR);

  EXPECT_EQ(FailureOf([&] { Create(javaClass); }),
            Throws<CJavaVmException>("jni/JavaVm", AnyLine,
                                     "Failed ot attach the current thread to the underlying Java VM."));

  EXPECT_THAT(jvm.Calls(), ElementsAre(attach));
  jvm.AnswerAttachment();
}

TEST_P(JavaClassCreationTest, KeepsNothingWhenMemoryRunsOut) {
  const CJavaClass javaClass = NewClass();
  AnswerCreation();
  Failure failure;

  const int runs = FailEachAllocation([&] { failure = FailureOf([&] { Create(javaClass); }); },
                                      [&](int, const Allocations& allocations) {
                                        EXPECT_EQ(failure.type, typeid(CMemoryException));
                                        EXPECT_EQ(allocations.Live(), 0u);
                                        EXPECT_EQ(jvm.LiveGlobals(), 1u);
                                      });

  EXPECT_EQ(runs, 2);
}

}  // namespace
}  // namespace tests
