// Many arguments at once, constructors, and objects made without one.
#include "fakes/Failure.h"
#include "realvm/RealVmTest.h"

namespace tests {
namespace {

using mirel::base::CMemoryException;
using torvan::jni::CJavaClass;
using torvan::jni::CJavaObject;
using torvan::jni::CJavaString;

const char* const constructor = "(ZBCSIJFDLjava/lang/String;[I)V";
const RX::UniChar* const wideConstructor = RX_TEXT("(ZBCSIJFDLjava/lang/String;[I)V");
const char* const whatArrived = "true -2 8364 -3000 2147483647 -9000000000 1.5 -2.25 end none";

class ArgumentsTest : public RealVmTest {
 protected:
  ~ArgumentsTest() noexcept override {}

  std::string Read(const CJavaObject& object) {
    return Utf8(CJavaString(object.GetObjectField("constructedBy", "Ljava/lang/String;")));
  }

  // Calls an operation with what comes first, followed by the arguments that `whatArrived` describes.
  template <typename Operation, typename... First>
  auto WithArguments(Operation operation, First... first) {
    return operation(first..., jboolean{JNI_TRUE}, jbyte{-2}, jchar{0x20AC}, jshort{-3000}, jint{2147483647},
                     jlong{-9000000000}, jfloat{1.5F}, jdouble{-2.25}, static_cast<jstring>(end), jobject{nullptr});
  }

  const CJavaClass arguments = vm.FindClass("fixture/Arguments");
  const CJavaString end = vm.NewString(RX_TEXT("end"));
};

TEST_F(ArgumentsTest, AConstructorOfANamedClassGetsItsArguments) {
  const auto newObject = [this](auto... all) { return vm.NewObject(all...); };
  EXPECT_EQ(Read(WithArguments(newObject, "fixture/Arguments", constructor)), whatArrived);
  EXPECT_EQ(Read(WithArguments(newObject, RX_TEXT("fixture/Arguments"), wideConstructor)), whatArrived);
}

TEST_F(ArgumentsTest, AConstructorOfAClassHandleGetsItsArguments) {
  const auto newObject = [this](auto... all) { return arguments.NewObject(all...); };
  EXPECT_EQ(Read(WithArguments(newObject, constructor)), whatArrived);
  EXPECT_EQ(Read(WithArguments(newObject, wideConstructor)), whatArrived);
}

TEST_F(ArgumentsTest, AStaticMethodGetsArgumentsOfEveryType) {
  const char* const signature = "(ZBCSIJFDLjava/lang/String;[I)Ljava/lang/String;";
  const auto call = [this](auto... all) { return arguments.CallStaticObjectMethod(all...); };
  EXPECT_EQ(Utf8(CJavaString(WithArguments(call, "all", signature))), whatArrived);
  EXPECT_EQ(Utf8(CJavaString(WithArguments(call, RX_TEXT("all"), Widen(signature).c_str()))), whatArrived);
}

TEST_F(ArgumentsTest, MoreArgumentsThanRegistersArriveInOrder) {
  const char* const signature = "(IDJFSDBFCDJFIDZFJDIFLjava/lang/String;)Ljava/lang/String;";
  const std::string expected =
      "-1 1.5 -2000000000000 2.5 -3 3.5 -4 4.5 65535 5.5 6000000000000 6.5 7 7.5 true 8.5 9 9.5 10 10.5 end";
  const CJavaObject object = arguments.NewObject("()V");
  const auto arrived = [this](auto call) {
    const CJavaString text = call(jint{-1}, jdouble{1.5}, jlong{-2000000000000}, jfloat{2.5F}, jshort{-3}, jdouble{3.5},
                                  jbyte{-4}, jfloat{4.5F}, jchar{65535}, jdouble{5.5}, jlong{6000000000000},
                                  jfloat{6.5F}, jint{7}, jdouble{7.5}, jboolean{JNI_TRUE}, jfloat{8.5F}, jlong{9},
                                  jdouble{9.5}, jint{10}, jfloat{10.5F}, static_cast<jstring>(end));
    return Utf8(text);
  };
  EXPECT_EQ(arrived([&](auto... all) { return object.CallObjectMethod("many", signature, all...); }), expected);
  EXPECT_EQ(
      arrived([&](auto... all) { return object.CallObjectMethod(RX_TEXT("many"), Widen(signature).c_str(), all...); }),
      expected);
  EXPECT_EQ(arrived([&](auto... all) { return object.CallNonvirtualObjectMethod("many", signature, all...); }),
            expected);
}

TEST_F(ArgumentsTest, TheConstructorIsChosenByItsSignature) {
  EXPECT_EQ(Read(vm.NewObject("fixture/Arguments", "()V")), "nothing");
}

// Fields keep Java's zero values, not those that the class assigns.
TEST_F(ArgumentsTest, AllocObjectRunsNoConstructor) {
  for (const CJavaObject& object :
       {vm.AllocObject("fixture/Arguments"), vm.AllocObject(RX_TEXT("fixture/Arguments")), arguments.AllocObject()}) {
    EXPECT_TRUE(object.IsInstanceOf(arguments));
    EXPECT_EQ(object.GetIntField("untouched", "I"), 0);
    EXPECT_EQ(Read(object), "(null)");
  }
  EXPECT_EQ(arguments.NewObject("()V").GetIntField("untouched", "I"), 7);
}

TEST_F(ArgumentsTest, AnAbstractClassMakesNoObject) {
  const CJavaClass unfinished = vm.FindClass("fixture/Kinds$Unfinished");
  EXPECT_EQ(FailureOf([&] { vm.AllocObject("fixture/Kinds$Unfinished"); }),
            Throws<CMemoryException>("jni/JavaVm", AnyLine, nullptr));
  EXPECT_EQ(TakePending(env), "java.lang.InstantiationException");
  EXPECT_EQ(FailureOf([&] { unfinished.AllocObject(); }), Throws<CMemoryException>("jni/JavaClass", AnyLine, nullptr));
  EXPECT_EQ(TakePending(env), "java.lang.InstantiationException");
  EXPECT_EQ(FailureOf([&] { unfinished.NewObject("()V"); }),
            Throws<CMemoryException>("jni/JavaClass", AnyLine, nullptr));
  EXPECT_EQ(TakePending(env), "java.lang.InstantiationException");
}

}  // namespace
}  // namespace tests
