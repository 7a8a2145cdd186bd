// A Java runtime whose library was loaded at run time.
#pragma once

#include <mirel/base/Ref.h>

#include "jni/JavaRuntimeImpl.h"
#include "jni/JavaRuntimeLibraryRef.h"

namespace torvan::jni {

// Holds one use of the pooled library for its whole life.
class CDynamicJavaRuntimeImpl : public CJavaRuntimeImpl {
 public:
  CDynamicJavaRuntimeImpl(jint jniVersion, const mirel::base::CRef<CJavaRuntimeLibraryRef>& library)
      : CJavaRuntimeImpl(jniVersion), m_library(library) {}

  CJavaVm CreateJavaVm(const CJavaRuntime& runtime, const options::COptions& options, bool ignoreUnrecognized) override;
  unsigned int GetCreatedJavaVms(const CJavaRuntime& runtime, mirel::util::CVector<CJavaVm>& vms) override;

 private:
  mirel::base::CRef<CJavaRuntimeLibraryRef> m_library;
};

}  // namespace torvan::jni
