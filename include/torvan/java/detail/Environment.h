// The Java VM of the process and the environment of each thread.
#pragma once

#include <torvan/jni/JniTypes.h>

#include <atomic>
#include <cstdint>

namespace torvan::java::detail {

// The VM while calls may be made: null before the start and from the moment its end begins.
// Constant-initialised and trivially destroyed, so that references may be dropped by static destructors.
extern std::atomic<JavaVM*> runningVm;

// The same VM as long as it is there: while its end begins, and after one that has left it running, too.
extern std::atomic<JavaVM*> livingVm;

inline bool HasVm() noexcept { return runningVm.load(std::memory_order_acquire) != nullptr; }

// Throws Misuse: "No Java VM runs: call StartVm or JoinVm first" or "The Java VM has ended".
[[noreturn]] void ThrowNoVm();
inline void RequireVm() {
  if (!HasVm()) ThrowNoVm();
}

// The calling thread's environment. A thread that is not attached is attached, as a daemon and with a context class
// loader, until it ends. Throws as RequireVm does, and Failure when the VM refuses the thread.
JNIEnv* Env();

// The calling thread's environment if it is attached to a VM that runs, else null.
JNIEnv* EnvIfAttached() noexcept;

// Throws Misuse: "This Thread belongs to another thread, or to one that was detached meanwhile".
[[noreturn]] void ThrowOtherThread();

// The number of the calling thread's attachment to the VM; no two attachments have the same. 0 where there is none, or
// where the VM does not report the threads that leave it.
#ifdef _WIN32
std::uintptr_t AttachmentNumber() noexcept;
#else
// Declared this way, the compiler knows that nothing initialises it, and reads it without a call.
extern __thread std::uintptr_t t_attachmentNumber;
inline std::uintptr_t AttachmentNumber() noexcept { return t_attachmentNumber; }
#endif

// A thread's attachment to the VM, which something belongs to. A thread that is detached and attached again, or another
// one, may well get the same environment: that alone does not tell them apart.
class Attachment {
 public:
  Attachment() noexcept = default;
  // The calling thread's, of which this is the environment.
  explicit Attachment(JNIEnv* env) noexcept : m_env(env), m_number(AttachmentNumber()) {}

  JNIEnv* Env() const noexcept { return m_env; }

  // Whether the calling thread has this attachment, and the VM runs. Otherwise the environment must not be touched.
  bool IsHere() const noexcept {
#ifndef NDEBUG
    EnvIfAttached();  // asserts that no CriticalElements are open
#endif
    return m_number != 0 ? m_number == AttachmentNumber() && HasVm() : EnvIfAttached() == m_env;
  }

  // The same, but also once the end of the VM has begun: then a thread may still leave it.
  bool IsStillHere() const noexcept {
    return m_number != 0 ? m_number == AttachmentNumber() : !HasVm() || EnvIfAttached() == m_env;
  }

 private:
  JNIEnv* m_env = nullptr;
  std::uintptr_t m_number = 0;
};

// The start and the end of the calling thread's use of an array's own memory, in which JNI allows no call. Meanwhile
// Env() throws Misuse "Java is called while CriticalElements are open in this thread".
void EnterCritical() noexcept;
void LeaveCritical() noexcept;
void RequireNotCritical();

// Counts the arrays of Java whose memory C++ uses: the end of the VM waits until none is left, as for Java's threads.
class OpenMemory {
 public:
  // Throws as RequireVm does.
  OpenMemory();
  OpenMemory(const OpenMemory&) = delete;
  OpenMemory& operator=(const OpenMemory&) = delete;
  ~OpenMemory();

  // The environment that the memory is released with, also once the end of the VM has begun. Null after that end, and
  // in a thread that is not attached.
  static JNIEnv* Env() noexcept;

  static bool IsOpen() noexcept;
  static bool IsOpenInThisThread() noexcept;
};

// Makes a VM the layer's own; null ends the use of it.
void UseVm(JavaVM* vm) noexcept;
// Ends calls to the VM, which keeps running.
void EndCalls() noexcept;

}  // namespace torvan::java::detail
