#include "jni/JavaRuntimeLibraryImpl.h"

namespace torvan::jni {

CJavaRuntimeLibraryImpl::CJavaRuntimeLibraryImpl(const RX::UniChar* path) : m_path(path) {}

CJavaRuntimeLibraryImpl::~CJavaRuntimeLibraryImpl() = default;

}  // namespace torvan::jni
