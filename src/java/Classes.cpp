#include <torvan/java/detail/Classes.h>

#include <torvan/java/Failure.h>
#include <torvan/java/StaticMethod.h>
#include <torvan/java/detail/LocalScope.h>
#include <torvan/java/detail/Pending.h>
#include <torvan/java/detail/Shared.h>
#include <torvan/java/detail/StringText.h>

#include <algorithm>
#include <string>

#include "java/Bindings.h"
#include "java/ClassNames.h"

namespace torvan::java::detail {

namespace {

constexpr StaticMethod<std::optional<std::string>(std::string_view)> GetProperty{"java/lang/System", "getProperty"};

// Throws what is pending after a class was not loaded; where it was not found, with the place where it was looked for.
[[noreturn]] void ThrowNotLoaded(JNIEnv* env, jobject loader) {
  const LocalScope thrown(env, env->ExceptionOccurred());
  env->ExceptionClear();
  std::string addition;
  try {
    const LocalScope type(env, env->GetObjectClass(thrown.Get()));
    if (NameOf(env, static_cast<jclass>(type.Get())) == "java.lang.ClassNotFoundException") {
      if (env->IsSameObject(loader, KeptLoader()) != JNI_FALSE) {
        addition =
            " (not on the class path " + GetProperty("java.class.path").value_or("") +
            "; bind members of another loader's class with In, and make arrays of it with NewArray(vector, class))";
      } else if (loader != nullptr) {
        const LocalScope own(env, env->GetObjectClass(loader));
        addition = " (looked for by a " + NameOf(env, static_cast<jclass>(own.Get())) + ")";
      }
    }
  } catch (const Failure&) {  // Java's own message is used instead
  }
  env->Throw(static_cast<jthrowable>(thrown.Get()));
  ThrowPending(env, addition);
}

}  // namespace

std::string NameOf(JNIEnv* env, jclass type) {
  const LocalScope name(env, env->CallObjectMethodA(type, Bound()->getName, nullptr));
  CheckPending(env);
  return ReadUtf8(env, static_cast<jstring>(name.Get()));
}

jclass LoadClass(JNIEnv* env, const char* name) { return LoadClass(env, KeptLoader(), name); }

jclass LoadClass(JNIEnv* env, jobject loader, const char* name, bool initialises) {
  const Bindings* const bindings = Bound();
  if (bindings == nullptr) ThrowNoVm();
  std::u16string dotted = ToUtf16(name);
  std::replace(dotted.begin(), dotted.end(), u'/', u'.');
  const auto units = reinterpret_cast<const jchar*>(dotted.data());
  const LocalScope text(env, env->NewString(units, static_cast<jsize>(dotted.size())));
  CheckPending(env);
  jvalue arguments[3]{};
  arguments[0].l = text.Get();
  arguments[1].z = initialises ? JNI_TRUE : JNI_FALSE;
  arguments[2].l = loader;
  jobject const found = env->CallStaticObjectMethodA(bindings->classClass, bindings->forName, arguments);
  if (env->ExceptionCheck() != JNI_FALSE) ThrowNotLoaded(env, loader);
  return static_cast<jclass>(found);
}

jobject KeptLoader() noexcept {
  const Bindings* const bindings = Bound();
  return bindings != nullptr ? bindings->loader : nullptr;
}

jclass KeepClass(JNIEnv* env, const char* name, std::atomic<jclass>& place) {
  const LocalScope found(env, LoadClass(env, name));
  const auto made = static_cast<jclass>(env->NewGlobalRef(found.Get()));
  if (made == nullptr) ThrowOutOfReferences(env);
  jclass kept = nullptr;
  if (place.compare_exchange_strong(kept, made, std::memory_order_acq_rel)) return made;
  env->DeleteGlobalRef(made);  // another thread was first
  return kept;
}

void RequireInstance(JNIEnv* env, jobject object, jclass type) {
  if (env->IsInstanceOf(object, type) != JNI_FALSE) return;
  const LocalScope own(env, env->GetObjectClass(object));
  const std::string name = NameOf(env, static_cast<jclass>(own.Get()));
  throw Misuse("java/Classes", __LINE__, "A " + name + " is given where a " + NameOf(env, type) + " is needed");
}

}  // namespace torvan::java::detail
