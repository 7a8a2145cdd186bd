// Java exceptions as C++ exceptions.
#pragma once

#include <torvan/jni/JniTypes.h>

namespace torvan::jni {

// Throws CJavaException with class, message and trace of the Java exception, or CJavaVmException when they cannot be
// read.
// Intentional: the exception is read while it is pending, and stays pending; the host clears it.
[[noreturn]] void ThrowJavaException(JNIEnv* env, jthrowable throwable);

// Throws as above when a Java exception is pending in the environment's thread; null is ignored.
// Every access to Java ends with this check, so it costs one JNI call.
inline void CheckJavaException(JNIEnv* env) {
  if (env == nullptr) return;
  jthrowable throwable = env->ExceptionOccurred();
  if (throwable != nullptr) ThrowJavaException(env, throwable);
}

}  // namespace torvan::jni
