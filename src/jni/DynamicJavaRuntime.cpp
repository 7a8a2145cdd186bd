#include <torvan/jni/DynamicJavaRuntime.h>

#include "jni/DynamicJavaRuntimeImpl.h"
#include "jni/JavaRuntimeLibraryPool.h"

namespace torvan::jni {

CDynamicJavaRuntime::CDynamicJavaRuntime(const RX::UniChar* path, jint jniVersion)
    : CJavaRuntime(new CDynamicJavaRuntimeImpl(jniVersion, CJavaRuntimeLibraryPool::GetInstance()->Get(path))) {}

CDynamicJavaRuntime::CDynamicJavaRuntime(VmVendor vendor, VmType type, const RX::UniChar* version, jint jniVersion)
    : CJavaRuntime(new CDynamicJavaRuntimeImpl(jniVersion,
                                               CJavaRuntimeLibraryPool::GetInstance()->Get(vendor, type, version))) {}

CDynamicJavaRuntime::CDynamicJavaRuntime(const CDynamicJavaRuntime& other) = default;
CDynamicJavaRuntime::~CDynamicJavaRuntime() noexcept(false) = default;
CDynamicJavaRuntime& CDynamicJavaRuntime::operator=(const CDynamicJavaRuntime& other) = default;

}  // namespace torvan::jni
