// Vectors of torvan::java, compared with JNI's copies of a region and the memory for them.
#include <memory>
#include <vector>

#include "Host.h"

namespace bench {
namespace {

constexpr java::StaticMethod<jint(const std::vector<jint>&)> Size{"bench/Subject", "size"};
constexpr java::StaticMethod<std::vector<jint>(java::Ref<java::Array<jint>>)> Same{"bench/Subject", "same"};

jintArray In(JNIEnv* env, const std::vector<jint>& values) {
  const auto size = static_cast<jsize>(values.size());
  jintArray const made = env->NewIntArray(size);
  Require(made != nullptr);
  env->SetIntArrayRegion(made, 0, size, values.data());
  return made;
}

long OutTo(JNIEnv* env, jintArray from, jsize length, const std::unique_ptr<jint[]>& to) {
  env->GetIntArrayRegion(from, 0, length, to.get());
  return to[0];
}

long Out(JNIEnv* env, jintArray from) {
  const jsize length = env->GetArrayLength(from);
  return OutTo(env, from, length, std::unique_ptr<jint[]>(new jint[static_cast<std::size_t>(length)]));
}

// As a vector does it, whose elements have a value from the start.
long OutZeroed(JNIEnv* env, jintArray from) {
  const jsize length = env->GetArrayLength(from);
  return OutTo(env, from, length, std::make_unique<jint[]>(static_cast<std::size_t>(length)));
}

void AddOf(const std::string& of, std::size_t count) {
  JNIEnv* const env = TheHost().env;
  jclass const type = TheHost().rawClass;
  const jmethodID size = env->GetStaticMethodID(type, "size", "([I)I");
  const jmethodID same = env->GetStaticMethodID(type, "same", "([I)[I");
  static const java::Thread thread;
  const std::vector<jint> values(count, 7);
  const java::Global<java::Array<jint>> array(java::NewArray(values));
  const auto ints = static_cast<jintArray>(array.Get());

  Add("java arrays", of + " in",
      {Batched("NewIntArray, SetIntArrayRegion",
               [=](long) {
                 env->DeleteLocalRef(In(env, values));
                 return 1;
               }),
       Batched("NewArray", [=](long) { return java::NewArray(values) ? 1 : 0; })});
  Add("java arrays", of + " out",
      {Batched("GetIntArrayRegion to new jint[n]", [=](long) { return Out(env, ints); }),
       Batched("zeroed first", [=](long) { return OutZeroed(env, ints); }),
       Batched("Copy", [=](long) { return java::Copy<std::vector<jint>>(array)[0]; })});
  Add("java arrays", of + " in and out",
      {Batched("by JNI",
               [=](long) {
                 jintArray const made = In(env, values);
                 const long first = Out(env, made);
                 env->DeleteLocalRef(made);
                 return first;
               }),
       Batched("NewArray, Copy", [=](long) { return java::Copy<std::vector<jint>>(java::NewArray(values))[0]; })});
  Add("java arrays", of + " as an argument",
      {Batched("raw",
               [=](long) {
                 jintArray const made = In(env, values);
                 const jint result = env->CallStaticIntMethod(type, size, made);
                 Check(env);
                 env->DeleteLocalRef(made);
                 return result;
               }),
       Batched("std::vector", [=](long) { return Size(thread, values); })});
  Add("java arrays", of + " as a result",
      {Batched("raw",
               [=](long) {
                 const auto result = static_cast<jintArray>(env->CallStaticObjectMethod(type, same, ints));
                 Check(env);
                 const long first = Out(env, result);
                 env->DeleteLocalRef(result);
                 return first;
               }),
       Batched("std::vector", [=](long) { return Same(thread, array)[0]; })});
  Add("java arrays", of + " in place",
      {Batched("GetIntArrayElements",
               [=](long) {
                 jint* const elements = env->GetIntArrayElements(ints, nullptr);
                 elements[0] = 7;
                 env->ReleaseIntArrayElements(ints, elements, 0);
                 return 1;
               }),
       Batched("Elements",
               [=](long) {
                 java::Elements<jint>(array).At(0) = 7;
                 return 1;
               }),
       Batched("CriticalElements", [=](long) {
         java::CriticalElements<jint>(array).At(0) = 7;
         return 1;
       })});
}

}  // namespace

void AddJavaArrays() {
  AddOf("16 jint", 16);
  AddOf("1,024 jint", 1024);
  AddOf("100,000 jint", 100000);
}

}  // namespace bench
