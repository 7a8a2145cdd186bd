// An exception that is pending, taken aside for a while.
#pragma once

#include <torvan/jni/JniTypes.h>

#include <utility>

namespace torvan::java::detail {

// Clears what is pending, because hardly anything may be called with it, and throws it again at the end of its scope.
// Nothing else may be pending then.
class PendingAside {
 public:
  explicit PendingAside(JNIEnv* env) noexcept : m_env(env), m_thrown(env->ExceptionOccurred()) {
    if (m_thrown != nullptr) env->ExceptionClear();
  }
  PendingAside(const PendingAside&) = delete;
  PendingAside& operator=(const PendingAside&) = delete;
  ~PendingAside() {
    if (m_thrown == nullptr) return;
    m_env->Throw(m_thrown);
    Drop();
  }

  // Forgets it: nothing is thrown.
  void Drop() noexcept {
    if (m_thrown != nullptr) m_env->DeleteLocalRef(std::exchange(m_thrown, nullptr));
  }

 private:
  JNIEnv* m_env;
  jthrowable m_thrown;
};

}  // namespace torvan::java::detail
