// Counts the references that the calling thread's JNI makes and deletes, on a real VM, and lets what makes one fail.
#pragma once

#include <torvan/jni/JniTypes.h>

#include <cstdarg>
#include <type_traits>
#include <utility>
#include <vector>

namespace tests {

// Replaces the thread's table of JNI functions while it lives. One at a time, and no other thread calls meanwhile.
class CountedReferences {
 public:
  explicit CountedReferences(JNIEnv* env) : m_env(env) {
    s_real = env->functions;
    s_locals = s_globals = s_weaks = 0;
    s_untilFailure = s_untilSilence = 0;
    s_throwsAfter = false;
    m_table = *s_real;
    // clang-format off
    Wrap<Fails::Throwing, &Jni::NewString, &Jni::NewStringUTF, &Jni::NewObjectA, &Jni::NewLocalRef,
         &Jni::AllocObject, &Jni::CallNonvirtualVoidMethodA, &Jni::GetStringChars,
         &Jni::CallObjectMethodA, &Jni::CallNonvirtualObjectMethodA, &Jni::CallStaticObjectMethodA,
         &Jni::CallVoidMethodA, &Jni::CallBooleanMethodA, &Jni::CallIntMethodA, &Jni::CallLongMethodA,
         &Jni::GetObjectArrayElement, &Jni::GetIntArrayElements, &Jni::GetPrimitiveArrayCritical,
         &Jni::FindClass, &Jni::GetMethodID, &Jni::GetStaticMethodID, &Jni::GetFieldID, &Jni::GetStaticFieldID>();
    Wrap<Fails::AlsoSilently, &Jni::NewObjectArray, &Jni::NewBooleanArray, &Jni::NewByteArray, &Jni::NewCharArray,
         &Jni::NewShortArray, &Jni::NewIntArray, &Jni::NewLongArray, &Jni::NewFloatArray, &Jni::NewDoubleArray,
         &Jni::NewDirectByteBuffer, &Jni::DefineClass>();
    Wrap<Fails::Never, &Jni::GetObjectField, &Jni::GetStaticObjectField, &Jni::GetObjectClass,
         &Jni::GetSuperclass, &Jni::ExceptionOccurred,
         &Jni::CallStaticVoidMethodA, &Jni::CallStaticBooleanMethodA, &Jni::CallStaticIntMethodA,
         &Jni::CallStaticLongMethodA, &Jni::CallStaticDoubleMethodA>();
    // clang-format on
    m_table.NewObjectV = [](JNIEnv* e, jclass type, jmethodID id, va_list arguments) {
      const Inside inside;
      jobject const made = s_real->NewObjectV(e, type, id, arguments);
      if (made != nullptr && s_depth == 1) ++s_locals;
      return made;
    };
    m_table.DeleteLocalRef = [](JNIEnv* e, jobject ref) {
      if (ref != nullptr && s_depth == 0) --s_locals;
      s_real->DeleteLocalRef(e, ref);
    };
    m_table.NewGlobalRef = [](JNIEnv* e, jobject ref) {
      if (s_depth == 0 && (FailsNow(e) || IsSilentNow())) return jobject{};
      jobject const made = s_real->NewGlobalRef(e, ref);
      if (made != nullptr && s_depth == 0) ++s_globals;
      return made;
    };
    m_table.DeleteGlobalRef = [](JNIEnv* e, jobject ref) {
      if (ref != nullptr && s_depth == 0) --s_globals;
      s_real->DeleteGlobalRef(e, ref);
    };
    m_table.NewWeakGlobalRef = [](JNIEnv* e, jobject ref) {
      if (s_depth == 0 && (FailsNow(e) || IsSilentNow())) return jweak{};
      const jweak made = s_real->NewWeakGlobalRef(e, ref);
      if (made != nullptr && s_depth == 0) ++s_weaks;
      return made;
    };
    m_table.DeleteWeakGlobalRef = [](JNIEnv* e, jweak ref) {
      if (ref != nullptr && s_depth == 0) --s_weaks;
      s_real->DeleteWeakGlobalRef(e, ref);
    };
    m_table.RegisterNatives = [](JNIEnv* e, jclass type, const JNINativeMethod* methods, jint count) -> jint {
      if (s_depth == 0 && (FailsNow(e) || IsSilentNow())) return JNI_ERR;
      return s_real->RegisterNatives(e, type, methods, count);
    };
    m_table.PushLocalFrame = [](JNIEnv* e, jint capacity) -> jint {
      if (s_depth == 0 && FailsNow(e)) return JNI_ENOMEM;
      s_frames.push_back(s_locals);
      return s_real->PushLocalFrame(e, capacity);
    };
    m_table.PopLocalFrame = [](JNIEnv* e, jobject result) {
      s_locals = s_frames.back() + (result != nullptr && s_depth == 0 ? 1 : 0);
      s_frames.pop_back();
      return s_real->PopLocalFrame(e, result);
    };
    env->functions = &m_table;
  }
  CountedReferences(const CountedReferences&) = delete;
  CountedReferences& operator=(const CountedReferences&) = delete;
  ~CountedReferences() { m_env->functions = s_real; }

  // Lets the n-th call from now, counted from 1, that needs memory of Java's or runs Java throw an OutOfMemoryError.
  static void FailAt(int call) { s_untilFailure = call; }
  // Lets the n-th call from now that makes a global reference, an array, a direct buffer, a class or a native method
  // fail, and no exception say why.
  static void FailSilentlyAt(int call) { s_untilSilence = call; }
  // Lets the next call that makes something leave an exception pending, too, as when there was one before it.
  static void ThrowAfterNext() { s_throwsAfter = true; }
  // Whether that call has come.
  static bool HasFailed() { return s_untilFailure == 0 && s_untilSilence == 0; }

  // How many more there are than at the start.
  int Locals() const { return s_locals; }
  int Globals() const { return s_globals; }
  int Weaks() const { return s_weaks; }

 private:
  using Jni = JNINativeInterface_;

  enum class Fails { Never, Throwing, AlsoSilently };

  // While the VM runs Java, the JDK's own native methods use the same table, and theirs end with them.
  template <Fails How, auto Slot, typename Function>
  struct Wrapper;
  template <Fails How, auto Slot, typename R, typename... A>
  struct Wrapper<How, Slot, R (JNICALL* Jni::*)(JNIEnv*, A...)> {
    static R JNICALL Call(JNIEnv* env, A... arguments) {
      const Inside inside;
      if (How != Fails::Never && s_depth == 1 && FailsNow(env)) return R();
      if (How == Fails::AlsoSilently && s_depth == 1 && IsSilentNow()) return R();
      if constexpr (std::is_convertible_v<R, jobject>) {
        const R made = (s_real->*Slot)(env, arguments...);
        if (How != Fails::Never && made != nullptr && s_depth == 1 && std::exchange(s_throwsAfter, false)) Throw(env);
        if (made != nullptr && s_depth == 1) ++s_locals;
        return made;
      } else {
        return (s_real->*Slot)(env, arguments...);
      }
    }
  };
  static bool FailsNow(JNIEnv* env) {
    if (s_untilFailure == 0 || --s_untilFailure != 0) return false;
    Throw(env);
    return true;
  }
  static void Throw(JNIEnv* env) {
    s_real->ExceptionCheck(env);  // a VM that checks wants it after each call
    jclass const type = s_real->FindClass(env, "java/lang/OutOfMemoryError");
    s_real->ThrowNew(env, type, "as the test wants");
    s_real->DeleteLocalRef(env, type);
  }
  static bool IsSilentNow() { return s_untilSilence != 0 && --s_untilSilence == 0; }

  struct Inside {
    Inside() { ++s_depth; }
    ~Inside() { --s_depth; }
  };
  template <Fails How, auto... Slot>
  void Wrap() {
    ((m_table.*Slot = &Wrapper<How, Slot, decltype(Slot)>::Call), ...);
  }

  static inline const Jni* s_real = nullptr;
  static inline int s_depth = 0;
  static inline int s_locals = 0;
  static inline int s_globals = 0;
  static inline int s_weaks = 0;
  static inline int s_untilFailure = 0;
  static inline int s_untilSilence = 0;
  static inline bool s_throwsAfter = false;
  static inline std::vector<int> s_frames;

  JNIEnv* m_env;
  Jni m_table;
};

}  // namespace tests
