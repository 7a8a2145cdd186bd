// Calls whose types are known at run time only.
#pragma once

#include <torvan/java/detail/Member.h>

namespace torvan::java::detail {

// A method or constructor, and its class.
struct CallTarget {
  jmethodID id;
  jclass type;
};

// Calls a method, whose result has the letter, after which something may be pending; or makes an object with a
// constructor. Throws Error when that fails.
jvalue CallByLetter(JNIEnv* env, MemberKind kind, char letter, const CallTarget& target, jobject object,
                    const jvalue* values);

}  // namespace torvan::java::detail
