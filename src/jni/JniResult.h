// The result of a JNI function.
#pragma once

#include <torvan/jni/JavaObject.h>

namespace torvan::jni {

// Calls a JNI function and keeps its result until the caller knows that no Java exception came with it.
// Only then is it converted for the host: the value itself, a handle of the object, or nothing for Void.
template <typename Host>
class CJniResult {
 public:
  template <typename Function, typename... Arguments>
  CJniResult(JNIEnv* env, Function function, Arguments... arguments) : m_value((env->*function)(arguments...)) {}

  Host ToHost(const CJavaVm&) const noexcept { return m_value; }

 private:
  Host m_value;
};

template <>
class CJniResult<CJavaObject> {
 public:
  template <typename Function, typename... Arguments>
  CJniResult(JNIEnv* env, Function function, Arguments... arguments) : m_local((env->*function)(arguments...)) {}

  CJavaObject ToHost(const CJavaVm& vm) const { return CJavaObject(vm, m_local, true); }

 private:
  jobject m_local;
};

template <>
class CJniResult<void> {
 public:
  template <typename Function, typename... Arguments>
  CJniResult(JNIEnv* env, Function function, Arguments... arguments) {
    (env->*function)(arguments...);
  }

  void ToHost(const CJavaVm&) const noexcept {}
};

}  // namespace torvan::jni
