// Text between C++ and Java.
#pragma once

#include <torvan/jni/JniTypes.h>

#include <string>
#include <string_view>

namespace torvan::java::detail {

// UTF-8 of any units; a surrogate without its partner becomes U+FFFD.
std::string ToUtf8(std::u16string_view units);

// What JNI calls UTF-8: zeros and surrogates are encoded one by one, and no byte is zero.
std::string ToModifiedUtf8(std::u16string_view units);

// The units of UTF-8 text. Throws Misuse that names the first byte (from 0) that is not UTF-8.
std::u16string ToUtf16(std::string_view text);

// All units of a Java string, zeros included. The string is not null.
std::u16string ReadUtf16(JNIEnv* env, jstring string);
std::string ReadUtf8(JNIEnv* env, jstring string);

}  // namespace torvan::java::detail
