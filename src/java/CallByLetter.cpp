#include "java/CallByLetter.h"

#include <torvan/java/detail/Function.h>
#include <torvan/java/detail/Jni.h>

namespace torvan::java::detail {

namespace {

template <char Letter>
jvalue CallOne(JNIEnv* env, MemberKind kind, const CallTarget& target, jobject object, const jvalue* values) {
  const jmethodID id = target.id;
  jvalue result{};
  if constexpr (Letter == 'V') {
    if (kind == MemberKind::StaticMethod) {
      Jni<'V'>::CallStatic(env, target.type, id, values);
    } else if (kind == MemberKind::SuperMethod) {
      Jni<'V'>::CallSuper(env, object, target.type, id, values);
    } else {
      Jni<'V'>::Call(env, object, id, values);
    }
  } else {
    Jni<Letter>::In(result) = kind == MemberKind::StaticMethod ? Jni<Letter>::CallStatic(env, target.type, id, values)
                              : kind == MemberKind::SuperMethod
                                  ? Jni<Letter>::CallSuper(env, object, target.type, id, values)
                                  : Jni<Letter>::Call(env, object, id, values);
  }
  return result;
}

}  // namespace

jvalue CallByLetter(JNIEnv* env, MemberKind kind, char letter, const CallTarget& target, jobject object,
                    const jvalue* values) {
  if (kind == MemberKind::Constructor) {
    jvalue made{};
    made.l = NewObject(env, target.type, target.id, values);
    return made;
  }
  switch (letter) {
    case 'Z':
      return CallOne<'Z'>(env, kind, target, object, values);
    case 'B':
      return CallOne<'B'>(env, kind, target, object, values);
    case 'C':
      return CallOne<'C'>(env, kind, target, object, values);
    case 'S':
      return CallOne<'S'>(env, kind, target, object, values);
    case 'I':
      return CallOne<'I'>(env, kind, target, object, values);
    case 'J':
      return CallOne<'J'>(env, kind, target, object, values);
    case 'F':
      return CallOne<'F'>(env, kind, target, object, values);
    case 'D':
      return CallOne<'D'>(env, kind, target, object, values);
    case 'L':
      return CallOne<'L'>(env, kind, target, object, values);
    default:
      return CallOne<'V'>(env, kind, target, object, values);
  }
}

}  // namespace torvan::java::detail
