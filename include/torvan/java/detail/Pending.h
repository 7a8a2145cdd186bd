// The Java exception that is pending in a thread.
#pragma once

#include <torvan/java/detail/Environment.h>
#include <torvan/jni/JniTypes.h>

#include <string_view>

namespace torvan::java::detail {

// Clears the pending exception, of which there must be one, and throws it as Error. `addition` is appended to what() as
// it is.
[[noreturn]] void ThrowPending(JNIEnv* env, std::string_view addition = {});

// The check after each JNI call that can fail.
inline void CheckPending(JNIEnv* env) {
  if (env->ExceptionCheck() != JNI_FALSE) ThrowPending(env);
}

// The same after a call that made a local reference, which is deleted before the exception is thrown. A VM that was
// called with an exception pending may well return an object.
inline void CheckPending(JNIEnv* env, jobject made) {
  if (env->ExceptionCheck() == JNI_FALSE) return;
  if (made != nullptr) env->DeleteLocalRef(made);
  ThrowPending(env);
}

// The calling thread's environment for a call: one that finds an exception pending does not start, but throws that.
inline JNIEnv* CallEnv() {
  JNIEnv* const env = Env();
  CheckPending(env);
  return env;
}

}  // namespace torvan::java::detail
