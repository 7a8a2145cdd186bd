// The type test of objects.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <mirel/base/MemoryException.h>
#include <mirel/base/NullReferenceException.h>
#include <torvan/JavaVmException.h>

#include "fakes/Allocations.h"
#include "fakes/Failure.h"
#include "jni/HandleTest.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using torvan::jni::CJavaClass;
using torvan::jni::CJavaObject;
using torvan::jni::CJavaVmException;

// A name longer than any buffer.
const RX::UniChar* const wideName = RX_TEXT(
    "gr\u00F6\u00DFe/aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa")
    RX_TEXT("aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa");
const std::string wideNameInLog = "\"gr\\c3\\b6\\c3\\9fe/" + std::string(193, 'a') + "\"";

class JavaObjectTypeTest : public HandleTest {};

struct Answer {
  const char* name;
  jboolean answer;
  bool isInstance;
};

class JavaObjectTypeAnswerTest : public JavaObjectTypeTest, public testing::WithParamInterface<Answer> {};

INSTANTIATE_TEST_SUITE_P(Answers, JavaObjectTypeAnswerTest,
                         testing::Values(Answer{"True", JNI_TRUE, true}, Answer{"False", JNI_FALSE, false},
                                         Answer{"NeitherIsFalse", 2, false}),
                         [](const auto& test) { return test.param.name; });

TEST_P(JavaObjectTypeAnswerTest, IsWhatTheVmSaysAndNoJavaExceptionIsLookedFor) {
  const CJavaObject object = NewObject();   // local:1
  const CJavaClass javaClass = NewClass();  // local:2
  jvm.Return<&Jni::IsInstanceOf>(GetParam().answer);

  EXPECT_EQ(object.IsInstanceOf("a/B"), GetParam().isInstance);
  EXPECT_EQ(object.IsInstanceOf(RX_TEXT("a/B")), GetParam().isInstance);
  EXPECT_EQ(object.IsInstanceOf(wideName), GetParam().isInstance);
  EXPECT_EQ(object.IsInstanceOf(javaClass), GetParam().isInstance);

  EXPECT_THAT(jvm.Calls(),
              ElementsAre(attach, "FindClass(\"a/B\")", "IsInstanceOf(global:1, local:3)",                //
                          attach, "FindClass(\"a/B\")", "IsInstanceOf(global:1, local:4)",                //
                          attach, "FindClass(" + wideNameInLog + ")", "IsInstanceOf(global:1, local:5)",  //
                          attach, "IsInstanceOf(global:1, global:2)"));
}

TEST_F(JavaObjectTypeTest, ANullObjectIsOfNoClassAndTheVmIsNotAsked) {
  const Object null(vm, nullptr);
  CJavaClass javaClass = NewClass();
  CJavaClass nullClass = javaClass;
  MakeNull(nullClass, vm);

  EXPECT_FALSE(null.IsInstanceOf("a/B"));
  EXPECT_FALSE(null.IsInstanceOf(RX_TEXT("a/B")));
  EXPECT_FALSE(null.IsInstanceOf(javaClass));
  EXPECT_FALSE(null.IsInstanceOf(nullClass));

  EXPECT_THAT(jvm.Calls(), IsEmpty());
}

TEST_F(JavaObjectTypeTest, ANullClassIsRefusedWithoutAskingTheVm) {
  const CJavaObject object = NewObject();
  CJavaClass nullClass = NewClass();
  MakeNull(nullClass, vm);
  jvm.TakeCalls();

  EXPECT_EQ(FailureOf([&] { object.IsInstanceOf(nullClass); }),
            Throws<mirel::base::CNullReferenceException>("jni/JavaObject", AnyLine, nullptr));

  EXPECT_THAT(jvm.Calls(), IsEmpty());
}

TEST_F(JavaObjectTypeTest, AClassThatIsNotFoundIsReportedWithTheJavaErrorPending) {
  const CJavaObject object = NewObject();
  const jthrowable error = jvm.Throw({"java.lang.NoClassDefFoundError", "a/B", {}});
  jvm.AnswerNull("FindClass(\"a/B\")", 1);
  const auto notFound = Throws<CJavaVmException>("jni/JavaObject", AnyLine, "The specified class was not found.");

  EXPECT_EQ(FailureOf([&] { object.IsInstanceOf("a/B"); }), notFound);
  EXPECT_THAT(jvm.TakeCalls(), ElementsAre(attach, "FindClass(\"a/B\")"));

  jvm.AnswerNull("FindClass(\"a/B\")", 1);
  EXPECT_EQ(FailureOf([&] { object.IsInstanceOf(RX_TEXT("a/B")); }), notFound);
  EXPECT_THAT(jvm.TakeCalls(), ElementsAre(attach, "FindClass(\"a/B\")"));

  EXPECT_EQ(jvm.Pending(), error);
}

TEST_F(JavaObjectTypeTest, APendingJavaExceptionIsLeftAlone) {
  const CJavaObject object = NewObject();
  jvm.Return<&Jni::IsInstanceOf>(JNI_TRUE);
  const jthrowable pending = jvm.Throw({"java.lang.Error", "bad", {}});

  EXPECT_TRUE(object.IsInstanceOf("a/B"));

  EXPECT_EQ(jvm.Pending(), pending);
}

TEST_F(JavaObjectTypeTest, AWideNameIsConvertedInTheAttachedThread) {
  const CJavaObject object = NewObject();
  Allocations allocations;
  allocations.Fail(1);

  EXPECT_EQ(FailureOf([&] { object.IsInstanceOf(wideName); }).type, typeid(mirel::base::CMemoryException));

  EXPECT_THAT(jvm.Calls(), ElementsAre(attach));
  EXPECT_EQ(allocations.Live(), 0u);
}

TEST_F(JavaObjectTypeTest, TheObjectsVmIsAskedAlsoAboutAClassOfAnother) {
  FakeJvm other;
  other.AnswerAll();
  {
    const CJavaObject object = NewObject();
    const CJavaClass stranger = HandleOf(other).FindClass("C");
    other.TakeCalls();
    jvm.Return<&Jni::IsInstanceOf>(JNI_TRUE);

    EXPECT_TRUE(object.IsInstanceOf(stranger));

    EXPECT_THAT(jvm.Calls(), ElementsAre(attach, "IsInstanceOf(global:1, global:1)"));
    EXPECT_THAT(other.Calls(), IsEmpty());
  }
  EXPECT_EQ(other.LiveGlobals(), 0u);
}

}  // namespace
}  // namespace tests
