// Raw local references that end with a scope.
#pragma once

#include <torvan/jni/JniTypes.h>

namespace torvan::java::detail {

// Deletes a local reference, which may be null, at the end of its scope.
class LocalScope {
 public:
  LocalScope(JNIEnv* env, jobject local) noexcept : m_env(env), m_local(local) {}
  LocalScope(const LocalScope&) = delete;
  LocalScope& operator=(const LocalScope&) = delete;
  ~LocalScope() {
    if (m_local != nullptr) m_env->DeleteLocalRef(m_local);
  }

  jobject Get() const noexcept { return m_local; }

 private:
  JNIEnv* m_env;
  jobject m_local;
};

}  // namespace torvan::java::detail
