#include <torvan/java/detail/Boxes.h>

#include <torvan/java/detail/Member.h>

#include <iterator>

#include "java/CallByLetter.h"

namespace torvan::java::detail {

namespace {

struct BoxRow {
  char letter;
  MemberName valueOf;
  MemberName value;
};

constexpr MemberName ValueOf(const char* type, const char* descriptor) {
  return {MemberKind::StaticMethod, type, "valueOf", descriptor, descriptor};
}
constexpr MemberName Value(const char* type, const char* name, const char* descriptor) {
  return {MemberKind::Method, type, name, descriptor, descriptor};
}

// clang-format off
constexpr BoxRow BoxRows[] = {
    {'Z', ValueOf(Boxed<'Z'>::JavaName, "(Z)Ljava/lang/Boolean;"),   Value(Boxed<'Z'>::JavaName, "booleanValue", "()Z")},
    {'B', ValueOf(Boxed<'B'>::JavaName, "(B)Ljava/lang/Byte;"),      Value(Boxed<'B'>::JavaName, "byteValue", "()B")},
    {'C', ValueOf(Boxed<'C'>::JavaName, "(C)Ljava/lang/Character;"), Value(Boxed<'C'>::JavaName, "charValue", "()C")},
    {'S', ValueOf(Boxed<'S'>::JavaName, "(S)Ljava/lang/Short;"),     Value(Boxed<'S'>::JavaName, "shortValue", "()S")},
    {'I', ValueOf(Boxed<'I'>::JavaName, "(I)Ljava/lang/Integer;"),   Value(Boxed<'I'>::JavaName, "intValue", "()I")},
    {'J', ValueOf(Boxed<'J'>::JavaName, "(J)Ljava/lang/Long;"),      Value(Boxed<'J'>::JavaName, "longValue", "()J")},
    {'F', ValueOf(Boxed<'F'>::JavaName, "(F)Ljava/lang/Float;"),     Value(Boxed<'F'>::JavaName, "floatValue", "()F")},
    {'D', ValueOf(Boxed<'D'>::JavaName, "(D)Ljava/lang/Double;"),    Value(Boxed<'D'>::JavaName, "doubleValue", "()D")},
};
// clang-format on

constexpr std::size_t IndexOf(char letter) {
  std::size_t index = 0;
  while (BoxRows[index].letter != letter) ++index;
  return index;
}

SharedPlace boxPlaces[std::size(BoxRows)];
SharedPlace valuePlaces[std::size(BoxRows)];

CallTarget TargetOf(JNIEnv* env, const SharedPlace& place, const MemberName& name) {
  const auto id = static_cast<jmethodID>(place.Id(env, [&name] { return name; }));
  return {id, place.Type()};
}

}  // namespace

jclass BoxClass(JNIEnv* env, char letter) { return KeptClass(env, BoxRows[IndexOf(letter)].value.type); }

jobject Box(JNIEnv* env, char letter, jvalue number) {
  const std::size_t i = IndexOf(letter);
  const CallTarget target = TargetOf(env, boxPlaces[i], BoxRows[i].valueOf);
  const jvalue made = CallByLetter(env, MemberKind::StaticMethod, 'L', target, nullptr, &number);
  CheckPending(env, made.l);
  return made.l;
}

jvalue Unbox(JNIEnv* env, char letter, jobject object) {
  const std::size_t i = IndexOf(letter);
  const CallTarget target = TargetOf(env, valuePlaces[i], BoxRows[i].value);
  const jvalue number = CallByLetter(env, MemberKind::Method, letter, target, object, nullptr);
  CheckPending(env);
  return number;
}

}  // namespace torvan::java::detail
