#include "jni/JavaRuntimeLibraryRef.h"

#include "jni/JavaRuntimeLibraryPool.h"

namespace torvan::jni {

CJavaRuntimeLibraryRef::CJavaRuntimeLibraryRef(CJavaRuntimeLibraryPool* pool,
                                               const mirel::base::CRef<CJavaRuntimeLibraryImpl>& library)
    : m_pool(pool), m_library(library) {}

CJavaRuntimeLibraryRef::~CJavaRuntimeLibraryRef() noexcept(false) {
  // A handle in a static object of the host can outlive the pool.
  if (m_pool != nullptr && CJavaRuntimeLibraryPool::IsAlive(m_pool)) m_pool->Release(*this);
}

}  // namespace torvan::jni
