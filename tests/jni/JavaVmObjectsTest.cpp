#include <gmock/gmock.h>
#include <mirel/base/MemoryException.h>
#include <torvan/JavaException.h>
#include <torvan/JavaVmException.h>
#include <torvan/jni/JavaClass.h>
#include <torvan/jni/JavaString.h>

#include <string>

#include "fakes/Allocations.h"
#include "fakes/Failure.h"
#include "fakes/JvmTest.h"

namespace tests {

using namespace torvan::jni;

namespace {

using mirel::base::CMemoryException;
using mirel::base::CNull;
using testing::ElementsAre;
using testing::IsEmpty;

// The classes, objects and strings that a VM returns, for narrow and for wide names.
template <typename Unit>
class JavaVmObjectsTest : public JvmTest {
 protected:
  JavaVmObjectsTest() {
    jvm.AnswerAttachment();
    jvm.AnswerLookups();
    jvm.AnswerGlobals();
    jvm.AnswerCheck();
    jvm.On<&Jni::AllocObject>([this](jclass) { return jvm.NewObject(); });
    jvm.On<&Jni::NewObjectV>([this](jclass, jmethodID, auto) { return jvm.NewObject(); });
  }
  ~JavaVmObjectsTest() noexcept override = default;

  static std::basic_string<Unit> Text(const std::string& ascii) { return {ascii.begin(), ascii.end()}; }

  // Lets the call end with a Java exception beside its result.
  jobject ThrowBeside() {
    this->jvm.AnswerAll();
    this->jvm.Throw({"a.E", "bad", {}});
    return this->jvm.NewObject();
  }

  const CJavaVm vm = Vm();
  const std::basic_string<Unit> name = Text("a/B");
  const std::basic_string<Unit> signature = Text("(IDLa/B;)V");
  const std::basic_string<Unit> noArguments = Text("()V");
};

using Units = testing::Types<char, RX::UniChar>;
class UnitNames {
 public:
  template <typename Unit>
  static std::string GetName(int) {
    return std::is_same_v<Unit, char> ? "Narrow" : "Wide";
  }
};
TYPED_TEST_SUITE(JavaVmObjectsTest, Units, UnitNames);

TYPED_TEST(JavaVmObjectsTest, FindClassTakesAGlobalReferenceThatTheHandleDeletes) {
  {
    const CJavaClass javaClass = this->vm.FindClass(this->name.c_str());
    EXPECT_EQ(Describe(static_cast<jclass>(javaClass)), "global:1");
    EXPECT_THAT(this->jvm.TakeCalls(), ElementsAre("AttachCurrentThread(null)", "FindClass(\"a/B\")",  //
                                                   "AttachCurrentThread(null)", "NewGlobalRef(local:1)"));
  }
  EXPECT_THAT(this->jvm.Calls(), ElementsAre("AttachCurrentThread(null)", "DeleteGlobalRef(global:1)"));
}

TYPED_TEST(JavaVmObjectsTest, NamesReachJniAsTheyAre) {
  const auto dotted = this->Text("java.lang.String");
  const CJavaClass javaClass = this->vm.FindClass(dotted.c_str());
  EXPECT_EQ(this->jvm.Calls().at(1), "FindClass(\"java.lang.String\")");
}

TYPED_TEST(JavaVmObjectsTest, NullNamesReachJniAsNull) {
  const TypeParam* const null = nullptr;
  const CJavaClass javaClass = this->vm.FindClass(null);
  const CJavaObject allocated = this->vm.AllocObject(null);
  EXPECT_EQ(this->jvm.Calls().at(1), "FindClass(null)");
  EXPECT_EQ(this->jvm.Calls().at(5), "FindClass(null)");
}

TYPED_TEST(JavaVmObjectsTest, AllocObjectWrapsOnlyAfterTheCheck) {
  const CJavaObject object = this->vm.AllocObject(this->name.c_str());
  EXPECT_EQ(Describe(static_cast<jobject>(object)), "global:2");
  EXPECT_THAT(this->jvm.Calls(), ElementsAre("AttachCurrentThread(null)", "FindClass(\"a/B\")", "AllocObject(local:1)",
                                             "ExceptionOccurred",  //
                                             "AttachCurrentThread(null)", "NewGlobalRef(local:2)"));
}

TYPED_TEST(JavaVmObjectsTest, NewObjectPassesItsArguments) {
  const CJavaObject object =
      this->vm.NewObject(this->name.c_str(), this->signature.c_str(), jint{-7}, 2.5, this->jvm.NewObject());
  EXPECT_EQ(Describe(static_cast<jobject>(object)), "global:3");
  EXPECT_THAT(
      this->jvm.Calls(),
      ElementsAre("AttachCurrentThread(null)", "FindClass(\"a/B\")", "GetMethodID(local:2, \"<init>\", \"(IDLa/B;)V\")",
                  "NewObjectV(local:2, method:<init>, -7, 2.5, local:1)", "ExceptionOccurred",  //
                  "AttachCurrentThread(null)", "NewGlobalRef(local:3)"));
}

TYPED_TEST(JavaVmObjectsTest, AClassThatIsNotFoundIsReportedWithTheJavaErrorPending) {
  const auto notFound = Throws<CJavaVmException>("jni/JavaVm", AnyLine, "The specified class was not found.");
  this->jvm.template On<&Jni::FindClass>([this](const char*) {
    this->jvm.Throw({"java.lang.NoClassDefFoundError", "a/B", {}});
    return nullptr;
  });
  EXPECT_EQ(FailureOf([&] { this->vm.FindClass(this->name.c_str()); }), notFound);
  EXPECT_EQ(FailureOf([&] { this->vm.AllocObject(this->name.c_str()); }), notFound);
  EXPECT_EQ(FailureOf([&] { this->vm.NewObject(this->name.c_str(), this->noArguments.c_str()); }), notFound);
  EXPECT_NE(this->jvm.Pending(), nullptr);
  EXPECT_THAT(this->jvm.Calls(), ElementsAre("AttachCurrentThread(null)", "FindClass(\"a/B\")",  //
                                             "AttachCurrentThread(null)", "FindClass(\"a/B\")",  //
                                             "AttachCurrentThread(null)", "FindClass(\"a/B\")"));
}

TYPED_TEST(JavaVmObjectsTest, AConstructorThatIsNotFoundIsReportedWithTheJavaErrorPending) {
  this->jvm.template On<&Jni::GetMethodID>([this](jclass, const char*, const char*) {
    this->jvm.Throw({"java.lang.NoSuchMethodError", "<init>", {}});
    return nullptr;
  });
  EXPECT_EQ(FailureOf([&] { this->vm.NewObject(this->name.c_str(), this->noArguments.c_str()); }),
            Throws<CJavaVmException>("jni/JavaVm", AnyLine, "The specified constructor was not found."));
  EXPECT_NE(this->jvm.Pending(), nullptr);
  EXPECT_THAT(this->jvm.Calls(), ElementsAre("AttachCurrentThread(null)", "FindClass(\"a/B\")",
                                             "GetMethodID(local:1, \"<init>\", \"()V\")"));
}

TYPED_TEST(JavaVmObjectsTest, ANullObjectIsAMemoryFailureWithTheJavaErrorPending) {
  this->jvm.Throw({"java.lang.OutOfMemoryError", "Java heap space", {}});
  this->jvm.template Return<&Jni::AllocObject>(nullptr);
  this->jvm.template Return<&Jni::NewObjectV>(nullptr);
  const auto noMemory = Throws<CMemoryException>("jni/JavaVm", AnyLine, nullptr);
  EXPECT_EQ(FailureOf([&] { this->vm.AllocObject(this->name.c_str()); }), noMemory);
  EXPECT_EQ(this->jvm.TakeCalls().size(), 3u);
  EXPECT_EQ(FailureOf([&] { this->vm.NewObject(this->name.c_str(), this->noArguments.c_str()); }), noMemory);
  EXPECT_EQ(this->jvm.TakeCalls().size(), 4u);
  EXPECT_NE(this->jvm.Pending(), nullptr);
}

TYPED_TEST(JavaVmObjectsTest, AJavaExceptionBesideAnObjectIsThrownAndNothingIsWrapped) {
  this->jvm.template On<&Jni::AllocObject>([this](jclass) { return this->ThrowBeside(); });
  this->jvm.template On<&Jni::NewObjectV>([this](jclass, jmethodID, auto) { return this->ThrowBeside(); });
  EXPECT_THROW(this->vm.AllocObject(this->name.c_str()), CJavaException);
  EXPECT_THROW(this->vm.NewObject(this->name.c_str(), this->noArguments.c_str()), CJavaException);
  EXPECT_NE(this->jvm.Pending(), nullptr);
  EXPECT_THAT(this->jvm.Calls(), testing::Not(testing::Contains(testing::StartsWith("NewGlobalRef"))));
}

TYPED_TEST(JavaVmObjectsTest, AGlobalReferenceThatIsRefusedIsAMemoryFailure) {
  this->jvm.template Return<&Jni::NewGlobalRef>(nullptr);
  const auto noMemory = Throws<CMemoryException>("jni/JniHelper", AnyLine, nullptr);
  EXPECT_EQ(FailureOf([&] { this->vm.FindClass(this->name.c_str()); }), noMemory);
  EXPECT_EQ(FailureOf([&] { this->vm.AllocObject(this->name.c_str()); }), noMemory);
  EXPECT_EQ(FailureOf([&] { this->vm.NewObject(this->name.c_str(), this->noArguments.c_str()); }), noMemory);
}

TYPED_TEST(JavaVmObjectsTest, AThreadThatCannotBeAttachedMakesNoOtherCall) {
  this->jvm.template Return<&Invocation::AttachCurrentThread>(JNI_ERR);
  const auto notAttached =
      Throws<CJavaVmException>("jni/JavaVm", AnyLine, "Failed ot attach the current thread to the underlying Java VM.");
  EXPECT_EQ(FailureOf([&] { this->vm.FindClass(this->name.c_str()); }), notAttached);
  EXPECT_EQ(FailureOf([&] { this->vm.AllocObject(this->name.c_str()); }), notAttached);
  EXPECT_EQ(FailureOf([&] { this->vm.NewObject(this->name.c_str(), this->noArguments.c_str()); }), notAttached);
  EXPECT_EQ(FailureOf([&] { this->vm.NewString(RX_TEXT("text")); }), notAttached);
  EXPECT_THAT(this->jvm.Calls(), ElementsAre("AttachCurrentThread(null)", "AttachCurrentThread(null)",
                                             "AttachCurrentThread(null)", "AttachCurrentThread(null)"));
}

TYPED_TEST(JavaVmObjectsTest, ShortAsciiNamesNeedNoMemory) {
  this->jvm.template Return<&Jni::GetMethodID>(nullptr);
  const Allocations allocations;
  EXPECT_THROW(this->vm.NewObject(this->name.c_str(), this->noArguments.c_str()), CJavaVmException);
  EXPECT_EQ(allocations.Made(), 0);
}

// When wide names are converted, shown by the calls made before there is no memory for it.
class JavaVmObjectsConversionTest : public JavaVmObjectsTest<RX::UniChar> {
 protected:
  template <typename Operation>
  void ExpectNoMemory(Operation operation) {
    Allocations allocations;
    allocations.Fail(1);
    EXPECT_THROW(operation(), CMemoryException);
    EXPECT_EQ(allocations.Live(), 0u);
  }
};

TEST_F(JavaVmObjectsConversionTest, FindClassConvertsBeforeItAttaches) {
  ExpectNoMemory([&] { vm.FindClass(RX_TEXT("a/\u00C4")); });
  EXPECT_THAT(jvm.Calls(), IsEmpty());
}

TEST_F(JavaVmObjectsConversionTest, AllocObjectAttachesBeforeItConverts) {
  ExpectNoMemory([&] { vm.AllocObject(RX_TEXT("a/\u00C4")); });
  EXPECT_THAT(jvm.Calls(), ElementsAre("AttachCurrentThread(null)"));
}

TEST_F(JavaVmObjectsConversionTest, NewObjectConvertsTheNameFirstAndTheSignatureLast) {
  ExpectNoMemory([&] { vm.NewObject(RX_TEXT("a/\u00C4"), RX_TEXT("()V")); });
  EXPECT_THAT(jvm.TakeCalls(), IsEmpty());
  ExpectNoMemory([&] { vm.NewObject(RX_TEXT("a/B"), RX_TEXT("(La/\u00C4;)V")); });
  EXPECT_THAT(jvm.TakeCalls(), ElementsAre("AttachCurrentThread(null)", "FindClass(\"a/B\")"));
}

TEST_F(JavaVmObjectsConversionTest, NamesReachJniAsUtf8) {
  const CJavaObject object = vm.NewObject(RX_TEXT("a/\u00C4"), RX_TEXT("(La/\u20AC;)V"), nullptr);
  EXPECT_EQ(jvm.Calls().at(1), "FindClass(\"a/\\c3\\84\")");
  EXPECT_EQ(jvm.Calls().at(2), "GetMethodID(local:1, \"<init>\", \"(La/\\e2\\82\\ac;)V\")");
}

class JavaVmObjectsStringTest : public JvmTest {
 protected:
  JavaVmObjectsStringTest() { jvm.AnswerAll(); }
};

TEST_F(JavaVmObjectsStringTest, NullAndEmptyTextMakeANullStringWithoutAnyCall) {
  EXPECT_TRUE(Vm().NewString(nullptr) == CNull());
  EXPECT_TRUE(Vm().NewString(RX_TEXT("")) == CNull());
  EXPECT_THAT(jvm.Calls(), IsEmpty());
}

TEST_F(JavaVmObjectsStringTest, TextReachesJniAsItIs) {
  const CJavaString string = Vm().NewString(RX_TEXT("a\u20AC\U0001D11E"));
  EXPECT_EQ(Describe(static_cast<jstring>(string)), "global:1");
  EXPECT_THAT(jvm.Calls(), ElementsAre("AttachCurrentThread(null)", "NewString(\"a\\20ac\\d834\\dd1e\", 4)",
                                       "ExceptionOccurred", "AttachCurrentThread(null)", "NewGlobalRef(local:1)"));
}

TEST_F(JavaVmObjectsStringTest, AJavaExceptionIsThrownAndNothingIsWrapped) {
  jvm.On<&Jni::NewString>([this](const jchar*, jsize) {
    jvm.Throw({"java.lang.OutOfMemoryError", "Java heap space", {}});
    return nullptr;
  });
  EXPECT_THROW(Vm().NewString(RX_TEXT("text")), CJavaException);
  EXPECT_NE(jvm.Pending(), nullptr);
}

TEST_F(JavaVmObjectsStringTest, ANullStringWithoutAJavaExceptionIsANullHandle) {
  jvm.Return<&Jni::NewString>(nullptr);
  EXPECT_TRUE(Vm().NewString(RX_TEXT("text")) == CNull());
}

}  // namespace

}  // namespace tests
