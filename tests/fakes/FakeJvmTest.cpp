#include "fakes/FakeJvm.h"

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>

namespace tests {
namespace {

using testing::ElementsAre;

TEST(FakeJvmTest, ASlotWithoutAScriptFailsTheTestAndIsLogged) {
  FakeJvm jvm;
  EXPECT_NONFATAL_FAILURE(jvm.Env()->ExceptionClear(), "unexpected call: ExceptionClear");
  EXPECT_NONFATAL_FAILURE(jvm.Vm()->DestroyJavaVM(), "unexpected call: DestroyJavaVM");
  EXPECT_THAT(jvm.Calls(), ElementsAre("unexpected ExceptionClear", "unexpected DestroyJavaVM"));
}

TEST(FakeJvmTest, VariableArgumentsAreLoggedByTheMethodsDescriptor) {
  FakeJvm jvm;
  jvm.AnswerLookups();
  jvm.Return<&Jni::CallIntMethodV>(7);
  JNIEnv* env = jvm.Env();
  jclass javaClass = env->FindClass("a/B");
  jmethodID method = env->GetMethodID(javaClass, "f", "(ZBCSIJFDLa/B;[[ILa/B;)I");
  EXPECT_EQ(env->CallIntMethod(javaClass, method, JNI_TRUE, jbyte{-1}, jchar{65535}, jshort{-2}, jint{-3},
                               jlong{1} << 40, 0.5f, 2.5, javaClass, nullptr, javaClass),
            7);
  EXPECT_THAT(jvm.Calls(),
              ElementsAre("FindClass(\"a/B\")", "GetMethodID(local:1, \"f\", \"(ZBCSIJFDLa/B;[[ILa/B;)I\")",
                          "CallIntMethodV(local:1, method:f, 1, -1, 65535, -2, -3, 1099511627776, 0.5, "
                          "2.5, local:1, null, local:1)"));
}

TEST(FakeJvmTest, ACallCanBeMadeToAnswerNullOnce) {
  FakeJvm jvm;
  jvm.AnswerLookups();
  jvm.AnswerNull("FindClass(\"a/B\")", 2);
  EXPECT_NE(jvm.Env()->FindClass("a/B"), nullptr);
  EXPECT_EQ(jvm.Env()->FindClass("a/B"), nullptr);
  EXPECT_NE(jvm.Env()->FindClass("a/B"), nullptr);
}

TEST(FakeJvmTest, GlobalsShowTheirLocalAndMustNotBeDeletedTwice) {
  FakeJvm jvm;
  jvm.AnswerGlobals();
  const jobject object = jvm.NewObject();
  const jobject global = jvm.Env()->NewGlobalRef(object);
  EXPECT_EQ(Describe(global), "global:1");
  EXPECT_EQ(jvm.LiveGlobals(), 1u);
  EXPECT_NONFATAL_FAILURE(jvm.Env()->DeleteGlobalRef(object), "no global reference: local:1");
  jvm.Env()->DeleteGlobalRef(global);
  EXPECT_EQ(jvm.LiveGlobals(), 0u);
  EXPECT_NONFATAL_FAILURE(jvm.Env()->DeleteGlobalRef(global), "no global reference: global:1");
}

TEST(FakeJvmTest, WeakReferencesAreCountedAndMustNotBeDeletedTwice) {
  FakeJvm jvm;
  jvm.AnswerWeaks();
  const jweak first = jvm.Env()->NewWeakGlobalRef(jvm.NewObject());
  const jweak second = jvm.Env()->NewWeakGlobalRef(jvm.NewObject());
  EXPECT_EQ(jvm.LiveWeaks(), 2u);
  jvm.Env()->DeleteWeakGlobalRef(first);
  EXPECT_NONFATAL_FAILURE(jvm.Env()->DeleteWeakGlobalRef(first), "no weak reference: local:1");
  EXPECT_EQ(jvm.LiveWeaks(), 1u);
  jvm.Env()->DeleteWeakGlobalRef(second);
  EXPECT_EQ(jvm.LiveWeaks(), 0u);
}

TEST(FakeJvmTest, CharactersMustBeReleasedOnce) {
  FakeJvm jvm;
  jvm.AnswerStrings();
  const jstring string = jvm.NewText("text");
  const jchar* chars = jvm.Env()->GetStringChars(string, nullptr);
  EXPECT_EQ(jvm.HeldStringChars(), 1u);
  const std::vector<jchar> others{0};
  EXPECT_NONFATAL_FAILURE(jvm.Env()->ReleaseStringChars(string, others.data()), "not the VM's");
  jvm.Env()->ReleaseStringChars(string, chars);
  EXPECT_EQ(jvm.HeldStringChars(), 0u);
}

}  // namespace

}  // namespace tests
