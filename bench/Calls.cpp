// Calls and fields of the fixed interface.
#include "Host.h"

namespace bench {
namespace {

struct Raw {
  JavaVM* vm;
  jclass type;
  jobject object;

  jint StaticInt(long i) const {
    JNIEnv* const env = Attach(vm);
    const jmethodID method = env->GetStaticMethodID(type, "add", "(II)I");
    Require(method != nullptr);
    const jint result = env->CallStaticIntMethod(type, method, static_cast<jint>(i), 3);
    CheckOccurred(env);
    return result;
  }
  jint Int(long i) const {
    JNIEnv* const env = Attach(vm);
    const jint result = env->CallIntMethod(object, MethodOf(env, object, "inc", "(I)I"), static_cast<jint>(i));
    CheckOccurred(env);
    return result;
  }
  jint Get() const {
    JNIEnv* const env = Attach(vm);
    const jint result = env->GetIntField(object, FieldOf(env, object, "field", "I"));
    CheckOccurred(env);
    return result;
  }
  void Set(jint value) const {
    JNIEnv* const env = Attach(vm);
    env->SetIntField(object, FieldOf(env, object, "field", "I"), value);
    CheckOccurred(env);
  }
  jint Mixed(long i) const {
    JNIEnv* const env = Attach(vm);
    const jmethodID method = env->GetStaticMethodID(type, "mixed", "(IJDZLjava/lang/Object;I)I");
    Require(method != nullptr);
    const jint result =
        env->CallStaticIntMethod(type, method, static_cast<jint>(i), jlong{2}, 2.5, JNI_TRUE, object, 4);
    CheckOccurred(env);
    return result;
  }
};

}  // namespace

void AddCalls() {
  const Host& host = TheHost();
  const Raw raw{host.vm, host.rawClass, host.rawSubject};
  const auto& type = host.subjectClass;
  const auto& object = host.subject;

  Add("calls", "static int",
      {Batched("raw", [raw](long i) { return raw.StaticInt(i); }),
       Batched("narrow", [&](long i) { return type.CallStaticIntMethod("add", "(II)I", static_cast<jint>(i), 3); }),
       Batched("wide", [&](long i) {
         return type.CallStaticIntMethod(RX_TEXT("add"), RX_TEXT("(II)I"), static_cast<jint>(i), 3);
       })});
  Add("calls", "static int, no local frame",
      {Single("raw", [raw](long i) { return raw.StaticInt(i); }),
       Single("narrow", [&](long i) { return type.CallStaticIntMethod("add", "(II)I", static_cast<jint>(i), 3); })});
  Add("calls", "instance int",
      {Batched("raw", [raw](long i) { return raw.Int(i); }),
       Batched("narrow", [&](long i) { return object.CallIntMethod("inc", "(I)I", static_cast<jint>(i)); }),
       Batched("wide",
               [&](long i) { return object.CallIntMethod(RX_TEXT("inc"), RX_TEXT("(I)I"), static_cast<jint>(i)); })});
  Add("calls", "six mixed arguments",
      {Batched("raw", [raw](long i) { return raw.Mixed(i); }),
       Batched("narrow",
               [&](long i) {
                 return type.CallStaticIntMethod("mixed", "(IJDZLjava/lang/Object;I)I", static_cast<jint>(i), jlong{2},
                                                 2.5, JNI_TRUE, static_cast<jobject>(object), 4);
               }),
       Batched("wide", [&](long i) {
         return type.CallStaticIntMethod(RX_TEXT("mixed"), RX_TEXT("(IJDZLjava/lang/Object;I)I"), static_cast<jint>(i),
                                         jlong{2}, 2.5, JNI_TRUE, static_cast<jobject>(object), 4);
       })});
  Add("calls", "field get",
      {Batched("raw", [raw](long) { return raw.Get(); }),
       Batched("narrow", [&](long) { return object.GetIntField("field", "I"); }),
       Batched("wide", [&](long) { return object.GetIntField(RX_TEXT("field"), RX_TEXT("I")); })});
  Add("calls", "field set",
      {Batched("raw",
               [raw](long) {
                 raw.Set(7);
                 return 0;
               }),
       Batched("narrow",
               [&](long) {
                 object.SetIntField("field", "I", 7);
                 return 0;
               }),
       Batched("wide", [&](long) {
         object.SetIntField(RX_TEXT("field"), RX_TEXT("I"), 7);
         return 0;
       })});
}

}  // namespace bench
