// What all handles of a Java VM share.
#pragma once

#include <mirel/base/Base.h>
#include <torvan/jni/JavaRuntime.h>
#include <torvan/jni/JniTypes.h>

namespace torvan::jni {

// Keeps the runtime, and so its library, as long as a handle of the VM exists.
class CJavaVmImpl : public mirel::base::CBase {
 public:
  CJavaVmImpl(const CJavaRuntime& runtime, JavaVM* vm) : m_runtime(runtime), m_vm(vm) {}
  CJavaVmImpl(const CJavaVmImpl&) = delete;
  CJavaVmImpl& operator=(const CJavaVmImpl&) = delete;

  JavaVM* GetVm() const noexcept { return m_vm; }

 private:
  CJavaRuntime m_runtime;
  JavaVM* m_vm;
};

}  // namespace torvan::jni
