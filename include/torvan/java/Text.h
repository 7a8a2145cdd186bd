// Java strings and C++ text.
#pragma once

#include <torvan/java/Local.h>
#include <torvan/java/detail/StringText.h>

#include <string>
#include <string_view>

namespace torvan::java {

// Makes a Java string from UTF-8, which is checked, or from UTF-16, whose units are taken as they are. Both are
// counted: a NUL is a character like any other, and an empty text is an empty string.
// Throws Misuse "invalid UTF-8 at byte N" (from 0), Error when Java's memory is full, and as a call does: what is
// pending first.
inline Local<String> NewString(std::string_view text) {
  JNIEnv* const env = detail::CallEnv();
  return detail::Own<String>(env, detail::NewText(env, text));
}
inline Local<String> NewString(std::u16string_view units) {
  JNIEnv* const env = detail::CallEnv();
  return detail::Own<String>(env, detail::NewText(env, units));
}

// The whole text of a Java string, in UTF-8; a surrogate without its partner becomes U+FFFD.
// Throws Misuse "null is given for a Java string", and as a call does.
std::string ToText(const Ref<String>& string);
// Its UTF-16 units, unchanged. Throws likewise.
std::u16string ToUnits(const Ref<String>& string);

}  // namespace torvan::java
