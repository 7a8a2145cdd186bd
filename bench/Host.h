// The Java VM of the program, and the objects that its rows work on.
#pragma once

#include <torvan/Java.h>
#include <torvan/Torvan.h>

#include <cstdlib>

#include "Bench.h"

namespace bench {

namespace java = torvan::java;

// Everything lives until the process ends. What is raw is owned by the handles beside it.
struct Host {
  JNIEnv* env;
  JavaVM* vm;
  torvan::jni::CJavaVm fixed;
  torvan::jni::CJavaClass subjectClass;
  torvan::jni::CJavaObject subject;
  jclass rawClass;
  jobject rawSubject;
};
const Host& TheHost();

struct Subject {
  static constexpr char JavaName[] = "bench/Subject";
};

inline void Require(bool condition) {
  if (!condition) std::abort();
}

// What a careful host writes by hand around each step of JNI.
inline JNIEnv* Attach(JavaVM* vm) {
  void* env = nullptr;
  Require(vm->AttachCurrentThread(&env, nullptr) == JNI_OK);
  return static_cast<JNIEnv*>(env);
}
inline void CheckOccurred(JNIEnv* env) { Require(env->ExceptionOccurred() == nullptr); }
inline void Check(JNIEnv* env) { Require(env->ExceptionCheck() == JNI_FALSE); }

// Looks up a member by hand, in the class of the object.
inline jmethodID MethodOf(JNIEnv* env, jobject object, const char* name, const char* descriptor) {
  const jmethodID method = env->GetMethodID(env->GetObjectClass(object), name, descriptor);
  Require(method != nullptr);
  return method;
}
inline jfieldID FieldOf(JNIEnv* env, jobject object, const char* name, const char* descriptor) {
  const jfieldID field = env->GetFieldID(env->GetObjectClass(object), name, descriptor);
  Require(field != nullptr);
  return field;
}

struct Nothing {};

// A way that is measured in batches. Each batch has a local frame, as in a host that never returns to Java. A Setting
// lives while the loop runs.
template <typename Setting = Nothing, typename Operation>
Way Batched(std::string name, Operation operation) {
  return {std::move(name),
          [operation](long argument) {
            JNIEnv* const env = TheHost().env;
            Require(env->PushLocalFrame(64) == JNI_OK);
            const long result = operation(argument);
            env->PopLocalFrame(nullptr);
            return result;
          },
          [operation](benchmark::State& state) {
            constexpr long batch = 64;
            JNIEnv* const env = TheHost().env;
            [[maybe_unused]] const Setting setting{};
            Counted counted(state);
            long turn = 0;
            for ([[maybe_unused]] auto _ : state) {
              Require(env->PushLocalFrame(4 * batch) == JNI_OK);
              for (long i = 0; i < batch; ++i) benchmark::DoNotOptimize(operation(++turn));
              env->PopLocalFrame(nullptr);
            }
            counted.End(batch);
          }};
}

// The rows: one function and one source for each group.
void AddCalls();
void AddObjects();
void AddTexts();
void AddExceptions();
void AddContainers();
void AddJavaMembers();
void AddJavaTexts();
void AddJavaArrays();
void AddJavaCallbacks();
void AddJavaErrors();
void AddJavaRuntimes();

}  // namespace bench
