#include "jni/DynamicJavaRuntimeImpl.h"

#include <mirel/base/At.h>
#include <rx/Memory.h>
#include <torvan/JavaRuntimeException.h>

namespace torvan::jni {

using mirel::base::At;
using options::COptions;

namespace {

[[noreturn]] void Fail(unsigned int line, const char* text) {
  throw CJavaRuntimeException("jni/DynamicJavaRuntimeImpl", line, text, nullptr);
}

// Returns an option array to the set that created it.
struct JniOptions {
  const COptions& set;
  JavaVMOption* array;
  ~JniOptions() { set.DestroyJniOptions(array); }
};

// A block for JavaVM pointers; null when memory ran out.
struct VmBuffer {
  JavaVM** vms;
  explicit VmBuffer(jsize count)
      : vms(static_cast<JavaVM**>(RX_malloc(static_cast<std::size_t>(count) * sizeof(JavaVM*)))) {}
  ~VmBuffer() { RX_free(vms); }
  VmBuffer(const VmBuffer&) = delete;
  VmBuffer& operator=(const VmBuffer&) = delete;
};

}  // namespace

CJavaVm CDynamicJavaRuntimeImpl::CreateJavaVm(const CJavaRuntime& runtime, const COptions& options,
                                              bool ignoreUnrecognized) {
  JavaVM* vm = nullptr;
  void* env = nullptr;
  jint status = JNI_ERR;
  {
    JavaVMOption* array = options.CreateJniOptions();
    // Intentional: without a library the array leaks.
    CJavaRuntimeLibraryRef* library = m_library.operator->();
    const JniOptions jniOptions{options, array};
    JavaVMInitArgs initArgs{};
    initArgs.version = GetJniVersion();
    initArgs.nOptions = static_cast<jint>(options.GetOptionCount());
    initArgs.options = array;
    initArgs.ignoreUnrecognized = ignoreUnrecognized ? JNI_TRUE : JNI_FALSE;
    status = library->CreateJavaVm(&vm, &env, &initArgs);
  }
  if (status != JNI_OK) Fail(At(70), "Failed to create Java VM with the specified options.");
  return CJavaRuntimeImpl::CreateJavaVm(runtime, vm);
}

unsigned int CDynamicJavaRuntimeImpl::GetCreatedJavaVms(const CJavaRuntime& runtime,
                                                        mirel::util::CVector<CJavaVm>& vms) {
  jsize count = 0;
  if (m_library->GetCreatedJavaVms(nullptr, 0, &count) != JNI_OK)
    Fail(At(87), "Failed to get the number of created Java VMs.");
  if (count < 1) return static_cast<unsigned int>(count);
  const jsize capacity = count;
  const VmBuffer buffer(capacity);
  if (buffer.vms == nullptr) _ThrowMemoryException("jni/DynamicJavaRuntimeImpl", At(95));
  if (m_library->GetCreatedJavaVms(buffer.vms, capacity, &count) != JNI_OK)
    Fail(At(100), "Failed to get the list of created Java VMs.");
  // A VM created between the two calls is counted but not listed.
  for (jsize i = 0; i < count && i < capacity; ++i) {
    vms.Add(CJavaRuntimeImpl::CreateJavaVm(runtime, buffer.vms[i]));
  }
  return static_cast<unsigned int>(count);
}

}  // namespace torvan::jni
