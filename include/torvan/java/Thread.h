// The calling thread and the Java VM.
#pragma once

#include <torvan/java/detail/Environment.h>

#include <string_view>

namespace torvan::java {

// The calling thread, attached to the Java VM.
// Every thread is attached when it first calls, and detached when it ends, without a Thread; so is one that other code
// attached, once it has used the layer; if it has no context class loader by its first call, it gets one. Make one to
// name a thread in Java, to detach it earlier, or to pass it as the first argument of calls. Use it in the thread that
// made it, within its scope. A call with a Thread looks up no environment, and does not ask first whether a Java
// exception is pending: the host vouches that raw JNI and the fixed interface have left none. If they have, the call
// runs, as far as the VM lets it, and the old exception is cleared and thrown after it.
class Thread {
 public:
  // Attaches the calling thread if it is not attached. It stays attached until it ends.
  // Throws Misuse "No Java VM runs: call StartVm or JoinVm first" or "The Java VM has ended", and Failure when the VM
  // refuses the thread.
  Thread() : m_attachment(detail::Env()) {}

  // Attaches the calling thread under a name (UTF-8) if it is not attached, and then detaches it at the end of the
  // scope, which ends its local references. A thread that is attached keeps its name and stays attached; so does one
  // that other code has detached and attached again meanwhile, where the VM reports threads that leave it (JVMTI).
  // Throws as above, and Misuse when the name is not UTF-8.
  [[nodiscard]] explicit Thread(std::string_view name);

  Thread(const Thread&) = delete;
  Thread& operator=(const Thread&) = delete;
  ~Thread() {
    if (m_detaches && m_attachment.IsStillHere()) Detach();
  }

  // The environment. Throws Misuse "The Java VM has ended" after the end. Where asserts are on, also when it is used in
  // another thread, or after its thread was detached.
  JNIEnv* Env() const {
    detail::RequireVm();
#ifndef NDEBUG
    detail::RequireNotCritical();
    if (!m_attachment.IsHere()) detail::ThrowOtherThread();
#endif
    return m_attachment.Env();
  }

 private:
  static void Detach() noexcept;

  bool m_detaches = false;  // initialised before the attachment, which sets it
  detail::Attachment m_attachment;
};

}  // namespace torvan::java
