#include <torvan/jni/JavaRuntime.h>

#include "jni/JavaRuntimeImpl.h"

namespace torvan::jni {

CJavaRuntime::CJavaRuntime(const mirel::base::CRef<CJavaRuntimeImpl>& impl) : m_impl(impl) {}
CJavaRuntime::CJavaRuntime(const CJavaRuntime& other) = default;
CJavaRuntime::~CJavaRuntime() noexcept(false) = default;
CJavaRuntime& CJavaRuntime::operator=(const CJavaRuntime& other) = default;

jint CJavaRuntime::GetJniVersion() const { return m_impl->GetJniVersion(); }

CJavaVm CJavaRuntime::CreateJavaVm(const options::COptions& options, bool ignoreUnrecognized) {
  return m_impl->CreateJavaVm(*this, options, ignoreUnrecognized);
}

unsigned int CJavaRuntime::GetCreatedJavaVms(mirel::util::CVector<CJavaVm>& vms) const {
  return m_impl->GetCreatedJavaVms(*this, vms);
}

}  // namespace torvan::jni
