// The owner of a JNI reference.
#pragma once

#include <mirel/base/Base.h>
#include <torvan/jni/JavaVm.h>
#include <torvan/jni/JniTypes.h>

namespace torvan::jni {

// Owns one global reference or none; all handles of one Java object share it.
class CJniGlobalRef : public mirel::base::CBase {
 public:
  // With `makeGlobal` it creates a global reference and leaves `object` alone; without, it takes ownership of `object`,
  // which is a global reference. For null it owns nothing and makes no JNI call. Throws CMemoryException (no message)
  // when the VM has no room for a reference.
  CJniGlobalRef(const CJavaVm& vm, jobject object, bool makeGlobal);

  // Deletes the reference. A CException while doing so is printed to the debug stream and dropped; others pass.
  ~CJniGlobalRef() noexcept(false);

  CJniGlobalRef(const CJniGlobalRef&) = delete;
  CJniGlobalRef& operator=(const CJniGlobalRef&) = delete;

  jobject GetReference() const noexcept { return m_ref; }

 private:
  CJavaVm m_vm;
  jobject m_ref;
};

}  // namespace torvan::jni
