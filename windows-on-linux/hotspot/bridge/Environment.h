// JavaVM and JNIEnv as a Windows program calls them.
#pragma once

#include <jni.h>

#include <array>

#include "Windows.h"

namespace hotspot {

// Laid out as JNIEnv and JavaVM are: the table of functions comes first.
struct HostEnv {
  const void* const* functions;
  JNIEnv* real;
};
struct HostVm {
  const void* const* functions;
  JavaVM* real;
};

// The one of the process, once there is one.
HostVm* HostVmOf(JavaVM* real);

// The one of the calling thread. A table that the host puts into it stays until the thread is detached.
HostEnv* HostEnvOf(JNIEnv* real);

// The functions of every HostEnv whose table the host has not replaced.
using EnvFunctions = std::array<const void*, sizeof(JNINativeInterface_) / sizeof(void*)>;
EnvFunctions& HostFunctions();

// Lets Java call native methods of the host.
jint RegisterNatives(JNIEnv* env, jclass javaClass, const JNINativeMethod* methods, jint count);

}  // namespace hotspot
