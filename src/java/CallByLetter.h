// Calls whose types are known at run time only.
#pragma once

#include <torvan/java/detail/Member.h>

namespace torvan::java::detail {

// A method or constructor, and its class.
struct CallTarget {
  jmethodID id;
  jclass type;
};

// Calls a method, or makes an object with a constructor, whose result has the letter. May leave a Java exception
// pending.
jvalue CallByLetter(JNIEnv* env, MemberKind kind, char letter, const CallTarget& target, jobject object,
                    const jvalue* values);

}  // namespace torvan::java::detail
