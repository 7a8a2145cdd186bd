// The names of Java classes.
#pragma once

#include <torvan/jni/JniTypes.h>

#include <string>

namespace torvan::java::detail {

// The name of a class with dots, as Java spells it. Throws Error.
std::string NameOf(JNIEnv* env, jclass type);

}  // namespace torvan::java::detail
