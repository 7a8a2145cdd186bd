// How threads come to the VM and leave it, and what is asked of the system for that.
#pragma once

#include <torvan/java/detail/Environment.h>

namespace torvan::java::detail {

// Whether a thread's environment may be cached: only if the VM reports every thread that is detached, also by other
// code.
extern std::atomic<bool> threadEndsAreSeen;

// Whether the VM reports its death, which comes after its shutdown hooks, to OnVmDeath. Until then it may be called,
// also while it is being destroyed.
extern std::atomic<bool> vmDeathIsSeen;

// Marks a thread that asks the VM about itself, or is being attached or detached. Counts it before it reads the VM: so
// the end of the VM either waits for the thread, or has begun before, and then the thread finds no VM.
class Entering {
 public:
  // `vm` is runningVm or livingVm.
  explicit Entering(const std::atomic<JavaVM*>& vm) noexcept;
  Entering(const Entering&) = delete;
  Entering& operator=(const Entering&) = delete;
  ~Entering();

  JavaVM* Vm() const noexcept { return m_vm; }

 private:
  JavaVM* m_vm;
};

// Returns the environment of a thread that has none cached, attaches it under `name` (null: the VM's choice) if
// necessary, and caches it if that is allowed. `attached` tells whether this call attached it.
JNIEnv* AttachedEnv(const char* name, bool* attached = nullptr);

// The environment of the calling thread as the VM knows it, or null.
JNIEnv* AskForEnv() noexcept;

// Detaches the calling thread if it is attached to the VM that runs.
void DetachThread() noexcept;

// Asks a VM to report each thread that leaves it, and its own end. One without JVMTI reports nothing.
void WatchVm(JavaVM* vm) noexcept;

// Caches the calling thread's environment, and numbers its attachment if it is a new one.
void RememberEnv(JNIEnv* env, bool isByLayer) noexcept;
// Forgets both: the thread leaves the VM.
void ForgetEnv() noexcept;

// Whether the layer itself has attached the calling thread. False where attachments have no numbers.
bool IsAttachedByLayer() noexcept;

// Ends the use of the VM, and waits, for a second at most, until no thread is Entering any more.
void LeaveVm() noexcept;

// The system's part.

// Keeps the environment and the number of the calling thread's attachment.
void CacheEnv(JNIEnv* env) noexcept;
void SetAttachmentNumber(std::uintptr_t number) noexcept;
// Sets whether DetachThread() is called when the calling thread ends.
void DetachAtThreadEnd(bool detaches) noexcept;
// Keeps the code of the layer loaded until the process ends: the VM and ending threads call it.
void KeepLoaded() noexcept;

}  // namespace torvan::java::detail
