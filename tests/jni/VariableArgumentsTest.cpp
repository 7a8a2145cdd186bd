// Arguments after the signature: of every kind, and more than registers hold.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <utility>

#include "jni/HandleTest.h"

namespace tests {
namespace {

using torvan::jni::CJavaClass;
using torvan::jni::CJavaObject;

constexpr const char* signature = "(ZBCSIJFDLjava/lang/Object;[IDDDDDDDDJJJJJJ)I";
const RX::UniChar* const wideSignature = RX_TEXT("(ZBCSIJFDLjava/lang/Object;[IDDDDDDDDJJJJJJ)I");

class VariableArgumentsTest : public HandleTest {
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
  const Object object(vm, receiver);
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
  const Object object(vm, receiver);
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

// What may pass: the compiler refuses the rest, which public_variable_arguments_tests sees.

enum Unscoped { Three = 3 };
enum class Scoped : jint { Four = 4 };
struct Bits {
  int five : 4;
};

static_assert(torvan::jni::AreScalars<>);
static_assert(torvan::jni::AreScalars<char[4], int(), const volatile double, jobject, std::nullptr_t, Scoped>);
static_assert(torvan::jni::AreScalars<jint CJavaObject::*, void (CJavaObject::*)() const>);
static_assert(!torvan::jni::AreScalars<CJavaObject> && !torvan::jni::AreScalars<jint, Bits, jint>);

TEST_F(VariableArgumentsTest, EveryKindOfScalarMayPass) {
  const Object object(vm, receiver);
  jvm.Return<&Jni::CallIntMethodV>(1);
  const volatile short six = 6;
  const Bits bits = {5};
  const auto none = [](auto) { return nullptr; };
  object.CallIntMethod("m", "(ZIIIISFDLa;La;La;[I)I", true, Three, Scoped::Four, bits.five, 'A', six, 7.5F, 8.5,
                       static_cast<jstring>(argument), nullptr, none(0), jintArray{nullptr});
  EXPECT_EQ(jvm.TakeCalls().rbegin()[1],
            "CallIntMethodV(global:1, method:m, 1, 3, 4, 5, 65, 6, 7.5, 8.5, local:2, null, null, null)");
}

TEST_F(VariableArgumentsTest, NamesMayBeTextObjects) {
  const Object object(vm, receiver);
  const CJavaClass javaClass = vm.FindClass("C");
  jvm.Return<&Jni::CallIntMethodV>(1);
  jvm.Return<&Jni::NewObjectV>(receiver);
  const mirel::base::CString name("m"), narrow("(I)V");
  const mirel::base::CUnicodeString wide(RX_TEXT("(I)V"));
  object.CallIntMethod(name, narrow, jint{1});
  EXPECT_EQ(jvm.TakeCalls().rbegin()[1], "CallIntMethodV(global:1, method:m, 1)");
  javaClass.NewObject(wide, jint{2});
  EXPECT_EQ(jvm.TakeCalls()[2], "NewObjectV(global:3, method:<init>, 2)");
}

TEST_F(VariableArgumentsTest, TheAddressOfAnOperationIsTakenByItsType) {
  using Narrow = jint (CJavaObject::*)(const char*, const char*, ...) const;
  using Wide = jint (CJavaObject::*)(const RX::UniChar*, const RX::UniChar*, ...) const;
  const Object object(vm, receiver);
  jvm.Return<&Jni::CallIntMethodV>(1);
  Narrow narrow = &CJavaObject::CallIntMethod;
  (object.*narrow)("m", "(I)I", jint{1});
  (object.*static_cast<Wide>(&CJavaObject::CallIntMethod))(RX_TEXT("m"), RX_TEXT("(I)I"), jint{2});
  EXPECT_EQ(jvm.TakeCalls().rbegin()[1], "CallIntMethodV(global:1, method:m, 2)");
}

// A host's handle that takes texts itself.
class Friendly : public Object {
 public:
  using CJavaObject::CallIntMethod;
  using Object::Object;
  jint CallIntMethod(const char* name, const char* descriptor, const std::string& text) const {
    return CallIntMethod(name, descriptor, static_cast<jint>(text.size()));
  }
};

TEST_F(VariableArgumentsTest, ADerivedClassMayTakeWhatTheBaseRefuses) {
  const Friendly object(vm, receiver);
  jvm.Return<&Jni::CallIntMethodV>(1);
  object.CallIntMethod("m", "(I)I", std::string("four"));
  EXPECT_EQ(jvm.TakeCalls().rbegin()[1], "CallIntMethodV(global:1, method:m, 4)");
  object.CallIntMethod("m", "(I)I", jint{5});
  EXPECT_EQ(jvm.TakeCalls().rbegin()[1], "CallIntMethodV(global:1, method:m, 5)");
}

}  // namespace
}  // namespace tests
