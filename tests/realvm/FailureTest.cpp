// How failures are reported on a real VM, and what they leave pending.
#include <functional>

#include "fakes/Failure.h"
#include "realvm/RealVmTest.h"

namespace tests {
namespace {

using mirel::base::CMemoryException;
using torvan::jni::CJavaClass;
using torvan::jni::CJavaObject;
using torvan::jni::CJavaVmException;

class FailureTest : public RealVmTest {
 protected:
  ~FailureTest() noexcept override {}

  const CJavaClass failures = vm.FindClass("fixture/Failures");
  const CJavaObject object = failures.NewObject("()V");
};

// The VM has no method getClass that returns a string, so no Java exception is translated completely.
const Failure unreadable = Throws<CJavaVmException>(
    "jni/JavaExceptionHelper", 57, "Failed to get the method id of the getClass () method of the exception occured.");

TEST_F(FailureTest, AJavaExceptionIsReportedAsUnreadableAndReplacedByTheLookupsError) {
  const struct {
    const char* name;
    std::function<void()> operation;
  } rows[] = {
      {"method", [&] { object.CallVoidMethod("fail", "()V"); }},
      {"wide method", [&] { object.CallVoidMethod(RX_TEXT("fail"), RX_TEXT("()V")); }},
      {"nonvirtual method", [&] { object.CallNonvirtualVoidMethod("fail", "()V"); }},
      {"static method", [&] { failures.CallStaticVoidMethod("failShared", "()V"); }},
      {"static method several frames deep", [&] { failures.CallStaticIntMethod("failLater", "(I)I", 5); }},
      {"method of the runtime", [&] { vm.NewString(RX_TEXT("x")).CallCharMethod("charAt", "(I)C", 5); }},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(FailureOf(row.operation), unreadable) << row.name;
    EXPECT_EQ(TakePending(env), "java.lang.NoSuchMethodError") << row.name;
  }
}

TEST_F(FailureTest, TheHostClearsAndGoesOn) {
  EXPECT_EQ(FailureOf([&] { failures.CallStaticVoidMethod("failShared", "()V"); }), unreadable);
  vm.Attach()->ExceptionClear();
  EXPECT_EQ(vm.FindClass("java/lang/Math").CallStaticIntMethod("abs", "(I)I", -4), 4);
}

TEST_F(FailureTest, AJavaExceptionWithoutAMessageStaysPending) {
  EXPECT_EQ(
      FailureOf([&] { failures.CallStaticObjectMethod("failWithout", "()Ljava/lang/Object;"); }),
      Throws<CJavaVmException>("jni/JavaExceptionHelper", 89, "Failed to get the message of the exception occured."));
  EXPECT_EQ(TakePending(env, true), "java.lang.UnsupportedOperationException");
}

TEST_F(FailureTest, AConstructorThatThrowsMakesNoObjectAndLeavesItsExceptionPending) {
  const struct {
    const char* file;
    std::function<void()> operation;
  } rows[] = {
      {"jni/JavaVm", [&] { vm.NewObject("fixture/Failures", "(I)V", 1); }},
      {"jni/JavaVm", [&] { vm.NewObject(RX_TEXT("fixture/Failures"), RX_TEXT("(I)V"), 1); }},
      {"jni/JavaClass", [&] { failures.NewObject("(I)V", 1); }},
      {"jni/JavaClass", [&] { failures.NewObject(RX_TEXT("(I)V"), 1); }},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(FailureOf(row.operation), Throws<CMemoryException>(row.file, AnyLine, nullptr));
    EXPECT_EQ(TakePending(env, true), "java.lang.IllegalStateException: constructor");
  }
}

TEST_F(FailureTest, WhatIsNotFoundIsReportedAndTheVmsErrorStaysPending) {
  const char* const noClass = "The specified class was not found.";
  const char* const noConstructor = "The specified constructor was not found.";
  const char* const noField = "The specified field was not found.";
  const char* const noMethod = "The specified method was not found.";
  const char* const noStaticField = "The specified static field was not found.";
  const char* const noStaticMethod = "The specified static method was not found.";
  const char* const noClassDef = "java.lang.NoClassDefFoundError";
  const char* const noSuchField = "java.lang.NoSuchFieldError";
  const char* const noSuchMethod = "java.lang.NoSuchMethodError";
  const RX::UniChar* const none = RX_TEXT("none");
  const struct {
    const char* file;
    const char* message;
    const char* pending;
    std::function<void()> operation;
  } rows[] = {
      {"jni/JavaVm", noClass, noClassDef, [&] { vm.FindClass("no/Such"); }},
      {"jni/JavaVm", noClass, noClassDef, [&] { vm.FindClass(RX_TEXT("no/Such")); }},
      {"jni/JavaVm", noClass, noClassDef, [&] { vm.FindClass(""); }},
      {"jni/JavaVm", noClass, noClassDef, [&] { vm.FindClass("java.lang.String"); }},
      {"jni/JavaVm", noClass, noClassDef, [&] { vm.FindClass(RX_TEXT("java.lang.String")); }},
      {"jni/JavaVm", noClass, noClassDef, [&] { vm.FindClass("fixture.Failures"); }},
      {"jni/JavaVm", noClass, noClassDef, [&] { vm.AllocObject("no/Such"); }},
      {"jni/JavaVm", noClass, noClassDef, [&] { vm.NewObject("no/Such", "()V"); }},
      {"jni/JavaVm", noClass, "java.lang.ExceptionInInitializerError",
       [&] { vm.FindClass("fixture/Failures$Broken"); }},
      {"jni/JavaVm", noConstructor, noSuchMethod, [&] { vm.NewObject("fixture/Failures", "(J)V", jlong{1}); }},
      {"jni/JavaVm", noConstructor, noSuchMethod,
       [&] { vm.NewObject(RX_TEXT("fixture/Failures"), RX_TEXT("(D)V"), 1.0); }},
      {"jni/JavaClass", noConstructor, noSuchMethod, [&] { failures.NewObject("(J)V", jlong{1}); }},
      {"jni/JavaClass", noConstructor, noSuchMethod, [&] { failures.NewObject(RX_TEXT("(D)V"), 1.0); }},
      {"jni/JavaObject", noField, noSuchField, [&] { object.GetIntField("none", "I"); }},
      {"jni/JavaObject", noField, noSuchField, [&] { object.SetIntField(none, RX_TEXT("I"), 1); }},
      {"jni/JavaObject", noMethod, noSuchMethod, [&] { object.CallIntMethod("none", "()I"); }},
      {"jni/JavaObject", noField, noSuchMethod, [&] { object.CallIntMethod(none, RX_TEXT("()I")); }},
      {"jni/JavaObject", noMethod, noSuchMethod, [&] { object.CallNonvirtualIntMethod("none", "()I"); }},
      {"jni/JavaObject", noField, noSuchMethod, [&] { object.CallNonvirtualIntMethod(none, RX_TEXT("()I")); }},
      {"jni/JavaObject", noMethod, noSuchMethod, [&] { object.CallVoidMethod("failShared", "()V"); }},
      {"jni/JavaClass", noStaticField, noSuchField, [&] { failures.GetStaticIntField("none", "I"); }},
      {"jni/JavaClass", noStaticField, noSuchField, [&] { failures.SetStaticIntField(none, RX_TEXT("I"), 1); }},
      {"jni/JavaClass", noStaticMethod, noSuchMethod, [&] { failures.CallStaticIntMethod("none", "()I"); }},
      {"jni/JavaClass", noStaticMethod, noSuchMethod, [&] { failures.CallStaticIntMethod(none, RX_TEXT("()I")); }},
      {"jni/JavaClass", noStaticMethod, noSuchMethod, [&] { failures.CallStaticVoidMethod("fail", "()V"); }},
  };
  for (const auto& row : rows) {
    const auto number = &row - rows;
    EXPECT_EQ(FailureOf(row.operation), Throws<CJavaVmException>(row.file, AnyLine, row.message)) << "row " << number;
    EXPECT_EQ(TakePending(env), row.pending) << "row " << number;
  }
}

// Nothing clears the error of a lookup: the next check for a Java exception finds it, though its own call succeeded.
TEST_F(FailureTest, AnErrorLeftPendingIsReportedByTheNextAccess) {
  EXPECT_EQ(FailureOf([&] { object.GetIntField("none", "I"); }),
            Throws<CJavaVmException>("jni/JavaObject", AnyLine, "The specified field was not found."));
  EXPECT_EQ(FailureOf([&] { vm.NewString(RX_TEXT("x")); }), unreadable);
  EXPECT_EQ(TakePending(env), "java.lang.NoSuchMethodError");
}

template <typename Base, typename Operation>
bool IsCaughtAs(Operation operation) {
  try {
    operation();
  } catch (const Base&) {
    return true;
  } catch (...) {
  }
  return false;
}

TEST_F(FailureTest, AFailureIsCaughtByItsClassAndByEveryBase) {
  const auto javaThrows = [&] {
    env->ExceptionClear();
    failures.CallStaticVoidMethod("failShared", "()V");
  };
  EXPECT_TRUE(IsCaughtAs<CJavaVmException>(javaThrows));
  EXPECT_TRUE(IsCaughtAs<torvan::jni::CJniException>(javaThrows));
  EXPECT_TRUE(IsCaughtAs<mirel::base::CException>(javaThrows));
  EXPECT_TRUE(IsCaughtAs<mirel::base::CObject>(javaThrows));
  EXPECT_FALSE(IsCaughtAs<torvan::jni::CJavaException>(javaThrows));
  EXPECT_FALSE(IsCaughtAs<torvan::jni::CJavaRuntimeException>(javaThrows));
  EXPECT_FALSE(IsCaughtAs<std::exception>(javaThrows));

  const auto constructorThrows = [&] {
    env->ExceptionClear();
    failures.NewObject("(I)V", 1);
  };
  EXPECT_TRUE(IsCaughtAs<CMemoryException>(constructorThrows));
  EXPECT_TRUE(IsCaughtAs<mirel::base::CException>(constructorThrows));
  EXPECT_FALSE(IsCaughtAs<torvan::jni::CJniException>(constructorThrows));
  env->ExceptionClear();
}

}  // namespace
}  // namespace tests
