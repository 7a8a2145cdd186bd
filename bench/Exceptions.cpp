// A Java exception as a C++ exception of the fixed interface.
#include <string>

#include "Host.h"

namespace bench {
namespace {

struct Thrown {
  std::u16string className;
  std::u16string message;
  std::u16string trace;
};

std::u16string TextOf(JNIEnv* env, jobject object, jmethodID method) {
  const auto text = static_cast<jstring>(env->CallObjectMethod(object, method));
  Require(text != nullptr);
  const jchar* const units = env->GetStringChars(text, nullptr);
  std::u16string result(reinterpret_cast<const char16_t*>(units));
  env->ReleaseStringChars(text, units);
  return result;
}

// The same look-ups and calls in the same order. HotSpot has no getClass of this type, so that is how it ends there.
[[noreturn]] void Translate(JNIEnv* env, jthrowable throwable) {
  Thrown thrown;
  jclass const elementClass = env->FindClass("java/lang/StackTraceElement");
  jclass type = env->GetObjectClass(throwable);
  const jmethodID getTrace = env->GetMethodID(type, "getStackTrace", "()[Ljava/lang/StackTraceElement;");
  const jmethodID toString = env->GetMethodID(elementClass, "toString", "()Ljava/lang/String;");
  const auto elements = static_cast<jobjectArray>(env->CallObjectMethod(throwable, getTrace));
  const jsize count = env->GetArrayLength(elements);
  for (jsize i = 0; i < count; ++i) {
    thrown.trace += u"\tat ";
    thrown.trace += TextOf(env, env->GetObjectArrayElement(elements, i), toString);
  }
  type = env->GetObjectClass(throwable);
  thrown.message = TextOf(env, throwable, env->GetMethodID(type, "getMessage", "()Ljava/lang/String;"));
  type = env->GetObjectClass(throwable);
  env->FindClass("java/lang/Class");
  if (env->GetMethodID(type, "getClass", "()Ljava/lang/String;") == nullptr) thrown.className = u"unknown";
  throw thrown;
}

}  // namespace

void AddExceptions() {
  const Host& host = TheHost();
  JavaVM* const vm = host.vm;
  jclass const rawClass = host.rawClass;
  const auto& type = host.subjectClass;
  Add("exceptions", "Java exception to C++ exception",
      {Batched("raw",
               [=](long) {
                 JNIEnv* const env = Attach(vm);
                 try {
                   const jmethodID method = env->GetStaticMethodID(rawClass, "fail", "(I)I");
                   env->CallStaticIntMethod(rawClass, method, 3);
                   jthrowable const throwable = env->ExceptionOccurred();
                   if (throwable != nullptr) Translate(env, throwable);
                 } catch (const Thrown&) {
                   env->ExceptionClear();
                   return 1;
                 }
                 return 0;
               }),
       Batched("narrow", [&, env = host.env](long) {
         try {
           type.CallStaticIntMethod("fail", "(I)I", 3);
         } catch (const torvan::jni::CJniException&) {
           env->ExceptionClear();
           return 1;
         }
         return 0;
       })});
}

}  // namespace bench
