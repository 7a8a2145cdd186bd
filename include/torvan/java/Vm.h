// The Java VM of the process: how it starts and ends.
#pragma once

#include <torvan/java/VmSettings.h>
#include <torvan/jni/JavaVm.h>

#include <chrono>

namespace torvan::java {

// How long the end of the VM waits for threads that are not daemons.
inline constexpr std::chrono::milliseconds DefaultGrace{10000};

// How a VM ended. Its shutdown hooks have run in both cases.
enum class VmEnd {
  Destroyed,   // only daemon threads still ran
  LeftRunning  // other threads still ran when the grace was over; they go on until the process ends
};

// The Java VM of the process, started by StartVm or joined by JoinVm.
// All of the layer uses this one VM, so nothing else takes a Vm. It can be moved but not copied. Any thread may use it,
// one at a time.
class Vm {
 public:
  Vm(Vm&& other) noexcept;
  Vm& operator=(Vm&& other) noexcept;
  // Ends a VM that this object started, as End() does; a VM that was joined or released keeps running.
  ~Vm();

  // The VM for the fixed interface; it is the same for all and lasts until the process ends. Copy it from one thread at
  // a time, as that interface requires.
  const jni::CJavaVm& Handle() const noexcept;

  // Ends the VM: from now on calls throw Misuse "The Java VM has ended"; when only daemon threads still run, or else
  // when the grace is over, Java's shutdown hooks run, and data is saved. May be called on any thread; when the VM has
  // ended already, returns the same again, and while another thread is ending it, waits for that first. Elements and
  // CriticalElements that other threads have open are waited for as threads of Java's are, and what is written in them
  // arrives, even after the grace. A thread that is inside a call at that moment does not return from it. The grace may
  // be as long as the type allows. An exception that is pending in the calling thread is dropped, because an end that
  // was refused for it could not be made up for in the destructor.
  // Throws Misuse when the calling thread was called by Java or has Elements open itself, and when the VM was joined or
  // released. While another thread is ending the VM, it throws Misuse "The Java VM has ended" in threads that this end
  // may wait for: in shutdown hooks, in threads that Java has called or that have Elements open, and in attached
  // threads that it cannot tell the layer attached; where the VM does not report its end (JVMTI), in every thread once
  // the hooks run. Throws Error when Java cannot tell its threads or run its hooks.
  VmEnd End(std::chrono::milliseconds grace = DefaultGrace);

  // Lets the VM run until the process ends. Its shutdown hooks do not run then unless Java itself ends the process.
  void Release() noexcept;

 private:
  friend Vm StartVm(const VmSettings& settings);
  friend Vm JoinVm();
  friend Vm JoinVm(JavaVM* vm);

  explicit Vm(bool owns) noexcept : m_owns(owns) {}

  bool m_owns;
};

// Creates the Java VM of the process.
// The calling thread is attached, as a daemon, as every thread of the host is that calls; so any of them can end the
// VM. A process can have one VM, and only once. Throws StartFailure that says what was wrong: with the runtime, with a
// setting (named), or what the VM itself said. After a VM has refused options, the one of that library can only be
// started without a class path and a library path, because it would ignore them; its properties stay as they were set.
// What the VM does not survive and cannot be checked before (a file that is no agent, contradicting options) ends the
// process with exit code 1: what the VM prints goes to OnOutput or the standard error stream, and then OnExit is
// called.
[[nodiscard]] Vm StartVm(const VmSettings& settings = VmSettings());

// Joins the Java VM that runs in this process, which keeps running when the Vm is dropped.
// For a host's library that Java has loaded, and for hosts that created the VM otherwise. Classes are found through the
// calling thread's context class loader, or the system's where it has none. It may be joined again.
// An exception that is pending stays so. Throws StartFailure when no VM runs here, and Misuse "The Java VM has ended"
// once its end has begun, so also in a shutdown hook. A handle's VM that refuses the calling thread is
// CJavaVmException.
Vm JoinVm();
Vm JoinVm(const jni::CJavaVm& vm);
Vm JoinVm(JavaVM* vm);

// Ends a VM that a host of the fixed interface has created, as Vm::End() does. Handles of that interface may live on.
// That interface attaches threads as non-daemons: such a thread is waited for even after it has ended, unless
// CJavaVm::Detach() was called in it. Join it before, too: one that other code detaches while the VM is destroyed may
// never return from that (seen with Java 17).
// Throws as Vm::End() does, CJavaVmException when the calling thread cannot be attached, and StartFailure when the VM
// lacks a class of Java's own.
VmEnd EndVm(const jni::CJavaVm& vm, std::chrono::milliseconds grace = DefaultGrace);

}  // namespace torvan::java
