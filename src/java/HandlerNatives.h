// The native methods of the handler class.
#pragma once

#include <torvan/jni/JniTypes.h>

namespace torvan::java::detail {

// Throws as RequireRegistered does.
void RegisterHandlerNatives(JNIEnv* env, jclass handler);

// Makes a function the native method of a class. Returns JNI's status, and may leave an exception pending.
jint RegisterNative(JNIEnv* env, jclass type, const char* name, const char* descriptor, void* function) noexcept;

// Throws Error, and Failure where the VM has refused and does not say why.
void RequireRegistered(JNIEnv* env, jint status, const char* name, const char* descriptor);

}  // namespace torvan::java::detail
