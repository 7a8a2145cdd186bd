// The owner of a JNI reference.
#pragma once

#include <mirel/base/Base.h>
#include <torvan/jni/JavaVm.h>
#include <torvan/jni/JniTypes.h>

namespace torvan::jni {

// Owns one global reference, or none; all handles of one Java object share it.
class CJniGlobalRef : public mirel::base::CBase {
 public:
  // With `makeGlobal` a new global reference is taken and `object` left alone; without it, `object` is a global
  // reference that is owned from now on. Null owns nothing and makes no JNI call. Throws CMemoryException (no message)
  // when the VM has no room for a reference.
  CJniGlobalRef(const CJavaVm& vm, jobject object, bool makeGlobal);

  // Deletes the reference. A CException on the way is printed to the debug stream and dropped; any other passes.
  ~CJniGlobalRef() noexcept(false);

  CJniGlobalRef(const CJniGlobalRef&) = delete;
  CJniGlobalRef& operator=(const CJniGlobalRef&) = delete;

  jobject GetReference() const noexcept { return m_ref; }

 private:
  CJavaVm m_vm;
  jobject m_ref;
};

}  // namespace torvan::jni
