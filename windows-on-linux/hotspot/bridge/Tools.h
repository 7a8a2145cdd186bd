// JVMTI as a Windows program calls it: the events of a thread's and of the VM's end, and the table of JNI's functions.
// Its other functions say that they are not available.
#pragma once

#include <jni.h>

#include "Windows.h"

namespace hotspot {

struct HostTools;

// What GetEnv returns for a version of JVMTI.
jint GetTools(JavaVM* vm, HostTools** tools, jint version);

}  // namespace hotspot
