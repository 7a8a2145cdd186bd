#include <torvan/java/LocalFrame.h>

#include <torvan/java/Failure.h>
#include <torvan/java/detail/Pending.h>

#include <new>
#include <string>

namespace torvan::java {

LocalFrame::LocalFrame(int capacity) : m_env(detail::Env()) {
  if (capacity < 0) {
    throw Misuse("java/LocalFrame", __LINE__,
                 "A frame of " + std::to_string(capacity) + " local references cannot be made");
  }
  if (m_env->PushLocalFrame(capacity) == JNI_OK) return;
  detail::CheckPending(m_env);
  throw std::bad_alloc();
}

LocalFrame::~LocalFrame() {
  if (detail::EnvIfAttached() == m_env) m_env->PopLocalFrame(nullptr);
}

}  // namespace torvan::java
