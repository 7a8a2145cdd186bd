// Objects made by their constructors.
#pragma once

#include <torvan/java/detail/Pending.h>

namespace torvan::java::detail {

// Makes an object: a new local reference, or null with its exception pending. In two steps, because HotSpot's NewObject
// never deletes its local reference to an object whose constructor throws.
inline jobject TryNewObject(JNIEnv* env, jclass type, jmethodID constructor, const jvalue* values) {
  jobject const made = env->AllocObject(type);
  if (env->ExceptionCheck() == JNI_FALSE) {
    env->CallNonvirtualVoidMethodA(made, type, constructor, values);
    if (env->ExceptionCheck() == JNI_FALSE) return made;
  }
  if (made != nullptr) env->DeleteLocalRef(made);
  return nullptr;
}

// The same, but throws the exception.
inline jobject NewObject(JNIEnv* env, jclass type, jmethodID constructor, const jvalue* values) {
  jobject const made = TryNewObject(env, type, constructor, values);
  if (made == nullptr) ThrowPending(env);
  return made;
}

}  // namespace torvan::java::detail
