// Conversions to and from the fixed interface and raw JNI.
#pragma once

#include <torvan/java/Local.h>
#include <torvan/java/detail/Pending.h>

namespace torvan::java {

// Returns a handle of the fixed interface for the same object; null for a null reference.
// That interface's rules hold for it: handles share their counts, so make, copy and drop them from one thread at a
// time. Throws Misuse when no VM was started or joined, or it has ended, mirel::base::CMemoryException, and as a call
// does: what is pending first.
jni::CJavaObject Handle(const Ref<Object>& ref);

// Takes ownership of a raw local reference of the calling thread, even when this throws. Its class is tested unless T
// is Object or the raw type implies it: jstring, jclass, jthrowable. Throws a pending exception first, as Error,
// because raw JNI that failed returns null with an exception pending.
// Throws Misuse "A java.lang.Integer is given where a java.sql.Connection is needed", and as Thread() does.
template <typename T = Object, typename R>
Local<T> Adopt(R* raw) {
  JNIEnv* const env = detail::Env();
  Local<T> own = detail::Own<T>(env, raw);
  detail::CheckPending(env);
  if constexpr (!detail::IsA<typename detail::TagOf<R*>::Type, T>()) detail::Checked<T>(raw);
  return own;
}

}  // namespace torvan::java
