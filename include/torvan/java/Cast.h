// What class an object is of, and whether two references are to the same one.
#pragma once

#include <torvan/java/Global.h>
#include <torvan/java/Local.h>

namespace torvan::java {

// Tells whether the object is an instance of T's class; a null reference is of none.
// Throws Error when the class cannot be found, and as Thread() does.
template <typename T>
bool IsInstance(const Ref<Object>& ref) {
  if (!ref) return false;
  JNIEnv* const env = detail::Env();
  return env->IsInstanceOf(ref.Get(), detail::ClassOf<T>(env)) != JNI_FALSE;
}

// Gives the object as one of T's class, which is tested; null stays null.
// Throws Misuse "A java.lang.Integer is given where a java.sql.Connection is needed", and as IsInstance does.
template <typename T>
Local<T> Cast(const Ref<Object>& ref) {
  return Local<T>(Ref<T>(ref.Get()));
}
// The same without a new reference. `ref` keeps it when this throws.
template <typename T, typename From>
Local<T> Cast(Local<From>&& ref) {
  if (!ref) return nullptr;
  JNIEnv* const env = detail::Env();
  detail::RequireInstance(env, ref.Get(), detail::ClassOf<T>(env));
  return detail::Own<T>(env, ref.Release());
}
template <typename T, typename From>
Global<T> Cast(const Global<From>& ref) {
  detail::Checked<T>(ref.Get());
  return Global<T>(ref.m_share);
}

// Tells whether both references are to the same object; two null ones are. Throws as Thread() does.
inline bool Same(const Ref<Object>& left, const Ref<Object>& right) {
  if (!left || !right) return !left && !right;
  return detail::Env()->IsSameObject(left.Get(), right.Get()) != JNI_FALSE;
}

}  // namespace torvan::java
