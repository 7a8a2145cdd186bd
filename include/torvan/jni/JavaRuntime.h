// A Java runtime.
#pragma once

#include <mirel/base/Base.h>
#include <mirel/base/Ref.h>
#include <mirel/util/Vector.h>
#include <torvan/Export.h>
#include <torvan/jni/JniTypes.h>

namespace torvan::jni {

class CJavaRuntimeImpl;
class CJavaVm;
namespace options {
class COptions;
}

// One Java runtime library, used at one JNI version.
// Copies share the runtime; the library stays loaded until the last runtime handle and the last VM handle made from it
// are gone. Threads: only one thread at a time may use runtimes, also those of different libraries; CJavaVm has the
// whole rule.
class TORVAN_API CJavaRuntime : public mirel::base::CBase {
 public:
  CJavaRuntime(const CJavaRuntime& other);
  virtual ~CJavaRuntime() noexcept(false);
  CJavaRuntime& operator=(const CJavaRuntime& other);

  // Returns the JNI version that the handle was made with, unchecked.
  jint GetJniVersion() const;

  // Creates a Java VM and attaches the calling thread to it.
  // With `ignoreUnrecognized` the VM skips options that it does not know. A process can have one VM; use
  // GetCreatedJavaVms to join one that is there. The VM runs until the process ends, without Java's shutdown hooks,
  // unless the host ends it first by JNI's DestroyJavaVM. Throws CJavaRuntimeException "Failed to create Java VM with
  // the specified options." when the runtime refuses.
  //
  // Out of memory: throws CMemoryException when there is none for the array of options, or none for the handle of the
  // new VM; that VM runs, and GetCreatedJavaVms finds it. When there is none for the text of an option, nothing is
  // thrown: the runtime is given an array that was released, and what happens is undefined.
  CJavaVm CreateJavaVm(const options::COptions& options, bool ignoreUnrecognized);

  // Appends a handle of every VM of this process to `vms` and returns how many there are.
  // The vector keeps its handles, and after a failure also the handles appended so far. Throws CJavaRuntimeException
  // "Failed to get the number of created Java VMs." or "Failed to get the list of created Java VMs.", and
  // CMemoryException.
  unsigned int GetCreatedJavaVms(mirel::util::CVector<CJavaVm>& vms) const;

 protected:
  CJavaRuntime(const mirel::base::CRef<CJavaRuntimeImpl>& impl);

 private:
  RX_NOT_EXPORTED_BEGIN
  mirel::base::CRef<CJavaRuntimeImpl> m_impl;
  RX_NOT_EXPORTED_END
};

}  // namespace torvan::jni
