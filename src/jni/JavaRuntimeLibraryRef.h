// One use of a pooled runtime library.
#pragma once

#include <mirel/base/Ref.h>

#include "jni/JavaRuntimeLibraryImpl.h"

namespace torvan::jni {

class CJavaRuntimeLibraryPool;

// Keeps a library loaded while it exists; the last one unloads it.
// The library's operations throw CNullReferenceException (no message) when there is no library.
class CJavaRuntimeLibraryRef : public mirel::base::CBase {
 public:
  // Represents a use that the pool has already counted; with a null pool there is none to end.
  CJavaRuntimeLibraryRef(CJavaRuntimeLibraryPool* pool, const mirel::base::CRef<CJavaRuntimeLibraryImpl>& library);
  ~CJavaRuntimeLibraryRef() noexcept(false);
  CJavaRuntimeLibraryRef(const CJavaRuntimeLibraryRef&) = delete;
  CJavaRuntimeLibraryRef& operator=(const CJavaRuntimeLibraryRef&) = delete;

  jint CreateJavaVm(JavaVM** vm, void** env, void* initArgs) { return m_library->CreateJavaVm(vm, env, initArgs); }
  jint GetCreatedJavaVms(JavaVM** buffer, jsize bufferLength, jsize* count) {
    return m_library->GetCreatedJavaVms(buffer, bufferLength, count);
  }

 private:
  friend class CJavaRuntimeLibraryPool;

  CJavaRuntimeLibraryPool* m_pool;  // not owned; may be destroyed
  mirel::base::CRef<CJavaRuntimeLibraryImpl> m_library;
};

}  // namespace torvan::jni
