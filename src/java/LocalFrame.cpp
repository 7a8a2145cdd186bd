#include <torvan/java/LocalFrame.h>

#include <torvan/java/detail/Pending.h>

#include <new>

namespace torvan::java {

LocalFrame::LocalFrame(int capacity) : m_env(detail::Env()) {
  if (m_env->PushLocalFrame(capacity) == JNI_OK) return;
  detail::CheckPending(m_env);
  throw std::bad_alloc();
}

LocalFrame::~LocalFrame() {
  if (detail::EnvIfAttached() == m_env) m_env->PopLocalFrame(nullptr);
}

}  // namespace torvan::java
