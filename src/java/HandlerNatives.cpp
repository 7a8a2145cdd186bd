#include "java/HandlerNatives.h"

#include <torvan/java/Failure.h>
#include <torvan/java/detail/LocalScope.h>
#include <torvan/java/detail/Pending.h>
#include <torvan/java/detail/Shared.h>

#include <algorithm>
#include <string>
#include <vector>

#include "java/CallByLetter.h"
#include "java/Handler.h"
#include "java/JniStatus.h"

namespace torvan::java::detail {

namespace {

// Makes room for so many local references. JNI guarantees some without it.
void EnsureLocals(JNIEnv* env, std::size_t count) {
  constexpr std::size_t free = 8;
  if (count > free && env->EnsureLocalCapacity(static_cast<jint>(count)) != JNI_OK) ThrowOutOfReferences(env);
}

const HandledFunction& FunctionAt(jlong address) { return *static_cast<const HandledFunction*>(AddressOf(address)); }

jlong JNICALL Numbers(JNIEnv* env, jobject self, jlong function, jlong a, jlong b, jlong c) {
  return CallForJava(env, self, FunctionAt(function), {a, b, c});
}

jlong JNICALL ToNumber(JNIEnv* env, jobject self, jlong function, jobject a, jobject b, jobject c) {
  return CallForJava(env, self, FunctionAt(function), {BitsOf(a), BitsOf(b), BitsOf(c)});
}

jobject JNICALL References(JNIEnv* env, jobject self, jlong function, jobject a, jobject b, jobject c) {
  return ObjectOf(ToNumber(env, self, function, a, b, c));
}

// Numbers and references of any count. `objects` has all, the numbers boxed.
jlong CallWithAll(JNIEnv* env, jobject self, jlong function, jobjectArray objects, jlongArray numbers) {
  const auto count = static_cast<std::size_t>(env->GetArrayLength(numbers));
  std::vector<jlong> bits(std::max(count, FromJava::InRegisters));
  env->GetLongArrayRegion(numbers, 0, static_cast<jsize>(count), bits.data());
  EnsureLocals(env, count);
  const char* const letters = FunctionAt(function).letters + 1;
  for (std::size_t i = 0; i < count; ++i) {
    if (letters[i] == 'L') bits[i] = BitsOf(env->GetObjectArrayElement(objects, static_cast<jsize>(i)));
  }
  return CallForJava(env, self, FunctionAt(function), FromJava::Of(bits.data(), count));
}

jlong JNICALL AnyToNumber(JNIEnv* env, jobject self, jlong function, jobjectArray objects, jlongArray numbers) {
  try {
    return CallWithAll(env, self, function, objects, numbers);
  } catch (...) {
    ThrowIntoJava(env);
    return 0;
  }
}

jobject JNICALL Any(JNIEnv* env, jobject self, jlong function, jobjectArray objects, jlongArray numbers) {
  return ObjectOf(AnyToNumber(env, self, function, objects, numbers));
}

// Runs an interface's own version of a method. `letters` are of the result and the arguments.
jobject CallInherited(JNIEnv* env, jobject proxy, jobject method, jstring letters, jobjectArray objects) {
  const std::string kinds = ReadUtf8(env, letters);
  // By JNI, which also works while the VM ends.
  const LocalScope owner(env, env->CallObjectMethodA(method, TheHandlerClass(env).getDeclaringClass, nullptr));
  CheckPending(env);
  const CallTarget target{env->FromReflectedMethod(method), static_cast<jclass>(owner.Get())};
  EnsureLocals(env, kinds.size());
  std::vector<jvalue> arguments(kinds.size());
  for (std::size_t i = 1; i < kinds.size(); ++i) {
    jobject const object = env->GetObjectArrayElement(objects, static_cast<jsize>(i - 1));
    if (kinds[i] == 'L') {
      arguments[i - 1].l = object;
    } else {
      const LocalScope boxed(env, object);
      arguments[i - 1] = Unbox(env, kinds[i], object);
    }
  }
  const jvalue result = CallByLetter(env, MemberKind::SuperMethod, kinds[0], target, proxy, arguments.data());
  // Asked for each: a checking VM of Java 8 reports the thread's next call otherwise.
  if (env->ExceptionCheck() != JNI_FALSE || kinds[0] == 'V') return nullptr;
  return kinds[0] == 'L' ? result.l : Box(env, kinds[0], result);
}

jobject JNICALL Inherited(JNIEnv* env, jobject, jobject proxy, jobject method, jstring letters, jobjectArray objects) {
  try {
    return CallInherited(env, proxy, method, letters, objects);
  } catch (...) {
    ThrowIntoJava(env);
    return nullptr;
  }
}

void JNICALL Drop(JNIEnv*, jobject, jlong address) {
  OwnedByJava* const owned = static_cast<OwnedByJava*>(AddressOf(address));
  Acquired(owned);
  delete owned;
}

struct NativeRow {
  const char* name;
  const char* descriptor;
  void* function;
};

}  // namespace

jint RegisterNative(JNIEnv* env, jclass type, const char* name, const char* descriptor, void* function) noexcept {
  const JNINativeMethod native = {const_cast<char*>(name), const_cast<char*>(descriptor), function};
  return env->RegisterNatives(type, &native, 1);
}

void RequireRegistered(JNIEnv* env, jint status, const char* name, const char* descriptor) {
  if (status == JNI_OK) return;
  CheckPending(env);
  const std::string what = std::string("This Java VM takes no C++ function for ") + name + descriptor + ": ";
  throw Failure("java/HandlerNatives", __LINE__, what + WordsFor(status, "the function"));
}

void RegisterHandlerNatives(JNIEnv* env, jclass handler) {
  // clang-format off
  const NativeRow rows[] = {
      {"references",  "(JLjava/lang/Object;Ljava/lang/Object;Ljava/lang/Object;)Ljava/lang/Object;", reinterpret_cast<void*>(&References)},
      {"toNumber",    "(JLjava/lang/Object;Ljava/lang/Object;Ljava/lang/Object;)J",                  reinterpret_cast<void*>(&ToNumber)},
      {"numbers",     "(JJJJ)J",                                                                     reinterpret_cast<void*>(&Numbers)},
      {"any",         "(J[Ljava/lang/Object;[J)Ljava/lang/Object;",                                  reinterpret_cast<void*>(&Any)},
      {"anyToNumber", "(J[Ljava/lang/Object;[J)J",                                                   reinterpret_cast<void*>(&AnyToNumber)},
      {"inherited",   "(Ljava/lang/Object;Ljava/lang/reflect/Method;Ljava/lang/String;[Ljava/lang/Object;)Ljava/lang/Object;", reinterpret_cast<void*>(&Inherited)},
      {"drop",        "(J)V",                                                                        reinterpret_cast<void*>(&Drop)},
  };
  // clang-format on
  for (const NativeRow& row : rows) {
    RequireRegistered(env, RegisterNative(env, handler, row.name, row.descriptor, row.function), row.name,
                      row.descriptor);
  }
}

}  // namespace torvan::java::detail
