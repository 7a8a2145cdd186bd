#include <torvan/java/LocalFrame.h>

#include <torvan/java/Failure.h>
#include <torvan/java/detail/Pending.h>

#include <new>
#include <string>

namespace torvan::java {

LocalFrame::LocalFrame(int capacity) : m_attachment(detail::Env()) {
  if (capacity < 0) {
    const std::string wanted = std::to_string(capacity) + " local references";
    throw Misuse("java/LocalFrame", __LINE__, "A frame of " + wanted + " cannot be made");
  }
  JNIEnv* const env = m_attachment.Env();
  if (env->PushLocalFrame(capacity) == JNI_OK) return;
  detail::CheckPending(env);
  throw std::bad_alloc();
}

LocalFrame::~LocalFrame() {
  if (m_attachment.IsHere()) m_attachment.Env()->PopLocalFrame(nullptr);
}

}  // namespace torvan::java
