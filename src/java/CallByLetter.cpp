#include "java/CallByLetter.h"

#include <torvan/java/detail/Jni.h>

namespace torvan::java::detail {

namespace {

template <char Letter>
jvalue CallOne(JNIEnv* env, MemberKind kind, const Found& found, jobject object, const jvalue* values) {
  const auto id = static_cast<jmethodID>(found.id);
  jvalue result{};
  if constexpr (Letter == 'V') {
    if (kind == MemberKind::StaticMethod) {
      Jni<'V'>::CallStatic(env, found.type, id, values);
    } else {
      Jni<'V'>::Call(env, object, id, values);
    }
  } else {
    Jni<Letter>::In(result) = kind == MemberKind::StaticMethod ? Jni<Letter>::CallStatic(env, found.type, id, values)
                                                               : Jni<Letter>::Call(env, object, id, values);
  }
  return result;
}

}  // namespace

jvalue CallByLetter(JNIEnv* env, MemberKind kind, char letter, const Found& found, jobject object,
                    const jvalue* values) {
  if (kind == MemberKind::Constructor) {
    jvalue made{};
    made.l = env->NewObjectA(found.type, static_cast<jmethodID>(found.id), values);
    return made;
  }
  switch (letter) {
    case 'Z':
      return CallOne<'Z'>(env, kind, found, object, values);
    case 'B':
      return CallOne<'B'>(env, kind, found, object, values);
    case 'C':
      return CallOne<'C'>(env, kind, found, object, values);
    case 'S':
      return CallOne<'S'>(env, kind, found, object, values);
    case 'I':
      return CallOne<'I'>(env, kind, found, object, values);
    case 'J':
      return CallOne<'J'>(env, kind, found, object, values);
    case 'F':
      return CallOne<'F'>(env, kind, found, object, values);
    case 'D':
      return CallOne<'D'>(env, kind, found, object, values);
    case 'L':
      return CallOne<'L'>(env, kind, found, object, values);
    default:
      return CallOne<'V'>(env, kind, found, object, values);
  }
}

}  // namespace torvan::java::detail
