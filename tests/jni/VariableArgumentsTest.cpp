// Arguments behind the signature, more than registers hold and of every kind.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

#include "jni/HandleTest.h"

namespace {

using fakes::Jni;
using torvan::jni::CJavaClass;
using torvan::jni::CJavaObject;

constexpr const char* signature = "(ZBCSIJFDLjava/lang/Object;[IDDDDDDDDJJJJJJ)I";
const RX::UniChar* const wideSignature = RX_TEXT("(ZBCSIJFDLjava/lang/Object;[IDDDDDDDDJJJJJJ)I");

class VariableArgumentsTest : public handles::HandleTest {
 protected:
  // Calls with the arguments that the log shows as `shown`.
  template <typename Call>
  auto With(Call call) {
    return call(jboolean{JNI_TRUE}, jbyte{-2}, jchar{0xFFFF}, jshort{-4}, jint{-5}, jlong{-6000000000}, jfloat{7.5F},
                jdouble{-8.25}, static_cast<jobject>(argument), static_cast<jobject>(nullptr), 1.5, 2.5, 3.5, 4.5, 5.5,
                6.5, 7.5, 8.5, jlong{1}, jlong{2}, jlong{3}, jlong{4}, jlong{5}, jlong{6});
  }
  const std::string shown =
      "1, -2, 65535, -4, -5, -6000000000, 7.5, -8.25, local:2, null, 1.5, 2.5, 3.5, 4.5, 5.5, 6.5, 7.5, 8.5, 1, 2, 3, "
      "4, 5, 6)";

  const jobject receiver = jvm.NewObject();
  const jobject argument = jvm.NewObject();
};

TEST_F(VariableArgumentsTest, ReachInstanceMethods) {
  const handles::Object object(vm, receiver);
  jvm.Return<&Jni::CallIntMethodV>(1);
  for (const int wide : {0, 1}) {
    With([&](auto... all) {
      return wide ? object.CallIntMethod(RX_TEXT("m"), wideSignature, all...)
                  : object.CallIntMethod("m", signature, all...);
    });
    EXPECT_EQ(jvm.TakeCalls().rbegin()[1], "CallIntMethodV(global:1, method:m, " + shown);
  }
}

TEST_F(VariableArgumentsTest, ReachNonvirtualMethods) {
  const handles::Object object(vm, receiver);
  jvm.Return<&Jni::CallNonvirtualIntMethodV>(1);
  for (const int wide : {0, 1}) {
    With([&](auto... all) {
      return wide ? object.CallNonvirtualIntMethod(RX_TEXT("m"), wideSignature, all...)
                  : object.CallNonvirtualIntMethod("m", signature, all...);
    });
    EXPECT_EQ(jvm.TakeCalls().rbegin()[1],
              "CallNonvirtualIntMethodV(global:1, local:" + std::to_string(3 + wide) + ", method:m, " + shown);
  }
}

TEST_F(VariableArgumentsTest, ReachStaticMethodsAndConstructors) {
  const CJavaClass javaClass = vm.FindClass("C");
  jvm.Return<&Jni::CallStaticIntMethodV>(1);
  jvm.Return<&Jni::NewObjectV>(receiver);
  for (const int wide : {0, 1}) {
    With([&](auto... all) {
      return wide ? javaClass.CallStaticIntMethod(RX_TEXT("m"), wideSignature, all...)
                  : javaClass.CallStaticIntMethod("m", signature, all...);
    });
    EXPECT_EQ(jvm.TakeCalls().rbegin()[1], "CallStaticIntMethodV(global:3, method:m, " + shown);

    const CJavaObject object = With([&](auto... all) {
      return wide ? javaClass.NewObject(wideSignature, all...) : javaClass.NewObject(signature, all...);
    });
    EXPECT_EQ(jvm.TakeCalls()[2], "NewObjectV(global:3, method:<init>, " + shown);
  }
}

}  // namespace
