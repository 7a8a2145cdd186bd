// Text between C++ and Java's strings.
#pragma once

#include <torvan/java/detail/Utf.h>
#include <torvan/jni/JniTypes.h>

namespace torvan::java::detail {

// Makes a Java string: a new local reference. Throws Misuse for text that is not UTF-8 or longer than a Java string can
// be, and Error when Java has no memory for it.
jstring NewText(JNIEnv* env, std::string_view text);
jstring NewText(JNIEnv* env, std::u16string_view units);

// All of a Java string, zeros included. The string is not null; nothing is made in Java and nothing pending changes.
std::u16string ReadUtf16(JNIEnv* env, jstring string);
std::string ReadUtf8(JNIEnv* env, jstring string);

}  // namespace torvan::java::detail
