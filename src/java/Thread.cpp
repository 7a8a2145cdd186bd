#include <torvan/java/Thread.h>

#include <torvan/java/detail/StringText.h>

#include "java/Threads.h"

namespace torvan::java {

Thread::Thread(std::string_view name)
    : m_attachment(detail::AttachedEnv(detail::ToModifiedUtf8(detail::ToUtf16(name)).c_str(), &m_detaches)) {}

void Thread::Detach() noexcept { detail::DetachThread(); }

}  // namespace torvan::java
