#include "jni/JavaRuntimeImpl.h"

#include "jni/JavaVmImpl.h"

namespace torvan::jni {

CJavaRuntimeImpl::~CJavaRuntimeImpl() noexcept(false) = default;

CJavaVm CJavaRuntimeImpl::CreateJavaVm(const CJavaRuntime& runtime, JavaVM* vm) {
  return CJavaVm(mirel::base::CRef<CJavaVmImpl>(new CJavaVmImpl(runtime, vm)));
}

}  // namespace torvan::jni
