// Java exceptions as C++ exceptions.
#pragma once

#include <torvan/jni/JniTypes.h>

namespace torvan::jni {

// Throws CJavaException with what the Java exception tells about itself, or CJavaVmException when it cannot be asked.
// Intentional: it is asked while it is pending, and not cleared afterwards; the host does that.
[[noreturn]] void ThrowJavaException(JNIEnv* env, jthrowable throwable);

// Throws as above when a Java exception is pending in the thread of the environment. Null has none.
// Every access to Java ends with it, so it costs one JNI call.
inline void CheckJavaException(JNIEnv* env) {
  if (env == nullptr) return;
  jthrowable throwable = env->ExceptionOccurred();
  if (throwable != nullptr) ThrowJavaException(env, throwable);
}

}  // namespace torvan::jni
