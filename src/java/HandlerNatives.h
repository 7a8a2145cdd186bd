// The native methods of the handler class.
#pragma once

#include <torvan/jni/JniTypes.h>

#include <string>

namespace torvan::java::detail {

// Throws as RegisterNative does.
void RegisterHandlerNatives(JNIEnv* env, jclass handler);

// Makes a function the native method of a class. Throws Error, and Failure where the VM refuses and does not say why.
void RegisterNative(JNIEnv* env, jclass type, std::string name, std::string descriptor, void* function);

}  // namespace torvan::java::detail
