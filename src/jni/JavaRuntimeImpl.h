// What all handles of a Java runtime share.
#pragma once

#include <mirel/base/Base.h>
#include <mirel/util/Vector.h>
#include <torvan/jni/JavaRuntime.h>
#include <torvan/jni/JavaVm.h>
#include <torvan/jni/options/Options.h>

namespace torvan::jni {

// Access to the VMs of one Java runtime at one JNI version.
// Operations are passed the handle they are called on, so that every VM handle can keep a copy of it.
class CJavaRuntimeImpl : public mirel::base::CBase {
 public:
  virtual ~CJavaRuntimeImpl() noexcept(false);
  CJavaRuntimeImpl(const CJavaRuntimeImpl&) = delete;
  CJavaRuntimeImpl& operator=(const CJavaRuntimeImpl&) = delete;

  virtual CJavaVm CreateJavaVm(const CJavaRuntime& runtime, const options::COptions& options,
                               bool ignoreUnrecognized) = 0;
  virtual unsigned int GetCreatedJavaVms(const CJavaRuntime& runtime, mirel::util::CVector<CJavaVm>& vms) = 0;

  jint GetJniVersion() const noexcept { return m_jniVersion; }

 protected:
  explicit CJavaRuntimeImpl(jint jniVersion) noexcept : m_jniVersion(jniVersion) {}

  // Returns a handle of an existing VM; makes no JNI call.
  static CJavaVm CreateJavaVm(const CJavaRuntime& runtime, JavaVM* vm);

 private:
  jint m_jniVersion;
};

}  // namespace torvan::jni
