// JavaVM and JNIEnv as a Windows program calls them.
#pragma once

#include <jni.h>

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

// The one of the calling thread.
HostEnv* HostEnvOf(JNIEnv* real);

// Lets Java call native methods of the host: up to 16 in all, of at most four parameters, none of them float or double.
jint RegisterNatives(JNIEnv* env, jclass javaClass, const JNINativeMethod* methods, jint count);

}  // namespace hotspot
