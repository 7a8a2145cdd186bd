// The status that JNI's functions return, in words.
#pragma once

#include <torvan/jni/JniTypes.h>

#include <string>

namespace torvan::java::detail {

// "there is not enough memory (JNI_ENOMEM)". `refused` is what the VM was to take, "the options".
inline std::string WordsFor(jint status, const char* refused) {
  const std::string refuses = std::string("it refuses ") + refused;
  switch (status) {
    case JNI_ERR:
      return refuses + " (JNI_ERR)";
    case JNI_EDETACHED:
      return "the thread is not attached (JNI_EDETACHED)";
    case JNI_EVERSION:
      return "it does not offer the JNI version that was asked for (JNI_EVERSION)";
    case JNI_ENOMEM:
      return "there is not enough memory (JNI_ENOMEM)";
    case JNI_EEXIST:
      return "there is a Java VM already (JNI_EEXIST)";
    case JNI_EINVAL:
      return refuses + " (JNI_EINVAL)";
    default:
      return "it returns the status " + std::to_string(status) + ", which JNI does not name";
  }
}

}  // namespace torvan::java::detail
