// The Java runtime that a test program is run with, and what its tests ask of any VM.
#pragma once

#include <torvan/Torvan.h>

#include <string>

#include "fakes/WideText.h"

namespace tests {

// The environment variable TORVAN_TEST_LIBJVM, which names the VM library; empty where the installed runtime is used.
const WideText& RuntimePath();

// The runtime with that library, or the installed one when none is named.
torvan::jni::CDynamicJavaRuntime Runtime(jint jniVersion = JNI_VERSION_1_6);

// Adds the option of the environment variable TORVAN_TEST_VM_OPTION if that is set.
void AddOptionFromEnvironment(torvan::jni::options::COptions& options);

// That option and the folder of the fixtures as class path.
torvan::jni::options::COptions FixtureOptions();

// UTF-8; null is "(null)".
std::string Utf8(const mirel::base::CUnicodeString& text);

// A Java system property; "(null)" when there is none.
std::string Property(const torvan::jni::CJavaVm& vm, const RX::UniChar* name);

// Clears the pending Java exception and returns its class, for example "java.lang.NoSuchFieldError"; "" when none was
// pending. With `message` the result includes it: "java.lang.IllegalStateException: bad".
std::string TakePending(JNIEnv* env, bool message = false);

}  // namespace tests
