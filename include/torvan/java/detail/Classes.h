// Java classes, found through the loader that is kept from the start.
#pragma once

#include <torvan/java/Tags.h>
#include <torvan/java/detail/Attributes.h>
#include <torvan/java/detail/Environment.h>

#include <atomic>

namespace torvan::java::detail {

// Finds and initialises a class: "java/lang/String", "java.lang.String", "[I", "[Ljava/lang/String;". Never by
// FindClass, which uses another loader in a callback. Returns a new local reference. Throws Error. It also works while
// the VM ends, for functions that Java calls then.
jclass LoadClass(JNIEnv* env, const char* name);
// The same through another loader; null is the VM's own. Without `initialises` the class is only found.
jclass LoadClass(JNIEnv* env, jobject loader, const char* name, bool initialises = true);

// A global reference to the loader; null before there is a VM.
jobject KeptLoader() noexcept;

// Stores the class of that name in `place` and never releases it; a class that is there already stays.
jclass KeepClass(JNIEnv* env, const char* name, std::atomic<jclass>& place);

// The class of a tag: found once, by the first thread that asks, and kept. Throws Error.
// Hidden, because libraries of a host that each have a copy of the layer may find another class by that name.
template <typename T>
TORVAN_JAVA_HIDDEN jclass ClassOf(JNIEnv* env) {
  if constexpr (RequireTag<T>()) {
    static std::atomic<jclass> place{nullptr};
    jclass const known = place.load(std::memory_order_acquire);
    return known != nullptr ? known : KeepClass(env, T::JavaName, place);
  } else {
    return nullptr;
  }
}

// Throws Misuse "A java.lang.Integer is given where a java.sql.Connection is needed" unless `object`, which is not
// null, is an instance of `type`.
void RequireInstance(JNIEnv* env, jobject object, jclass type);

}  // namespace torvan::java::detail
