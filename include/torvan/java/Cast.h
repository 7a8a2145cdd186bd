// Tests of an object's class, and of whether two references are to the same object.
#pragma once

#include <torvan/java/Global.h>
#include <torvan/java/Local.h>

namespace torvan::java {

// Returns whether the object is an instance of T's class; false for a null reference.
// Throws Error when the class cannot be found, and as a call does: what is pending first.
template <typename T>
bool IsInstance(const Ref<Object>& ref) {
  if (!ref) return false;
  JNIEnv* const env = detail::CallEnv();
  return env->IsInstanceOf(ref.Get(), detail::ClassOf<T>(env)) != JNI_FALSE;
}

// Returns the object as a reference of T after testing its class; null stays null.
// Throws Misuse "A java.lang.Integer is given where a java.sql.Connection is needed", and as IsInstance does.
template <typename T>
Local<T> Cast(const Ref<Object>& ref) {
  return Local<T>(Ref<T>(ref.Get()));
}
// The same without a new reference. `ref` is unchanged when this throws.
template <typename T, typename From>
Local<T> Cast(Local<From>&& ref) {
  if (!ref) return nullptr;
  JNIEnv* const env = detail::CallEnv();
  detail::RequireInstance(env, ref.Get(), detail::ClassOf<T>(env));
  return detail::Own<T>(env, ref.Release());
}
template <typename T, typename From>
Global<T> Cast(const Global<From>& ref) {
  detail::Checked<T>(ref.Get());
  return Global<T>(ref.m_share);
}

// Returns whether both references are to the same object; two null references are. Throws as Thread()
// does. What is pending stays so.
inline bool Same(const Ref<Object>& left, const Ref<Object>& right) {
  if (!left || !right) return !left && !right;
  return detail::Env()->IsSameObject(left.Get(), right.Get()) != JNI_FALSE;
}

}  // namespace torvan::java
