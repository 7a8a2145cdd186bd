// A running Java VM.
#pragma once

#include <mirel/base/Ref.h>
#include <rx/Text.h>
#include <torvan/Export.h>
#include <torvan/jni/JniTypes.h>
#include <torvan/jni/ScalarArguments.h>

namespace torvan::jni {

class CJavaClass;
class CJavaObject;
class CJavaString;
class CJavaVmImpl;

// The Java VM of this process.
// Copies share the VM; the library never ends it, whatever becomes of the handles. Names and signatures are JNI's own
// ("java/lang/String", "(ILjava/lang/String;)V") and are passed on unchanged; wide ones are converted to UTF-8.
//
// Threads: Java may be called from any thread; each operation attaches its calling thread to the VM and leaves it
// attached. But the library takes no lock, its counts are plain integers, and every handle of a class, object or string
// counts as a use of the VM handle that it came from. So the host must not let two threads at once
//   - create, copy, assign or drop handles that came from the same VM handle. An operation that returns a handle
//     creates one, also when it is called on a const handle.
//   - use runtimes, whichever they are. Dropping the last handle that came from a VM handle uses its runtime.
// Operations that return no handle change no count and need no lock. In a host with several threads, each has its own
// VM handle from CJavaRuntime::GetCreatedJavaVms, taken and dropped under one mutex, and shares no handle: see
// examples/threads.cpp.
//
// Every operation that needs Java throws CJavaVmException "Failed ot attach the current thread to the underlying Java
// VM." (so spelled) when the thread cannot be attached. A lookup that fails leaves the VM's own error pending in the
// thread; <torvan/JavaException.h> tells what else stays pending.
class TORVAN_API CJavaVm {
 public:
  CJavaVm(const CJavaVm& other);
  ~CJavaVm() noexcept(false);
  CJavaVm& operator=(const CJavaVm& other);

  // Tell whether two handles name the same VM.
  bool operator==(const CJavaVm& other) const noexcept;
  bool operator!=(const CJavaVm& other) const noexcept;

  // Attaches the calling thread and returns its environment, which only this thread may use.
  // A thread that is attached gets the environment it has. It stays attached until Detach().
  JNIEnv* Attach() const;
  // Detaches the calling thread; local references made in it end. However often the thread was attached, one call does
  // it. Throws CJavaVmException "Failed to detach the curretn thread from the underlying Java VM." (so spelled).
  void Detach() const;

  // Finds a class. Throws CJavaVmException "The specified class was not found." and CMemoryException.
  CJavaClass FindClass(const char* name) const;
  CJavaClass FindClass(const RX::UniChar* name) const;

  // Makes an object of a class without running a constructor.
  // Throws CJavaVmException "The specified class was not found.", CMemoryException when no object was made, and
  // CJavaException.
  CJavaObject AllocObject(const char* className) const;
  CJavaObject AllocObject(const RX::UniChar* className) const;

  // Makes an object with the constructor of this signature; its arguments follow in order, handles with a cast and
  // integers of the right width: see <torvan/jni/ScalarArguments.h>.
  // Throws CJavaVmException "The specified class was not found." or "The specified constructor was not found.",
  // CMemoryException when no object was made (also because the constructor threw), and CJavaException.
  CJavaObject NewObject(const char* className, const char* signature, ...) const;
  CJavaObject NewObject(const RX::UniChar* className, const RX::UniChar* signature, ...) const;
  TORVAN_REFUSE(CJavaObject, NewObject, const char*, const char*)
  TORVAN_REFUSE(CJavaObject, NewObject, const RX::UniChar*, const RX::UniChar*)

  // Makes a Java string of the units up to the terminating zero, unconverted.
  // Null and empty text make a null string. Throws CJavaException when the VM has no memory for it, and
  // CMemoryException.
  CJavaString NewString(const RX::UniChar* text) const;

 private:
  friend class CJavaRuntimeImpl;

  CJavaVm(const mirel::base::CRef<CJavaVmImpl>& impl);

  RX_NOT_EXPORTED_BEGIN
  mirel::base::CRef<CJavaVmImpl> m_impl;
  RX_NOT_EXPORTED_END
  JavaVM* m_vm;
};

}  // namespace torvan::jni
