#include "jni/JniHelper.h"

#include <mirel/base/MemoryException.h>

namespace torvan::jni {

CJniGlobalRef::CJniGlobalRef(const CJavaVm& vm, jobject object, bool makeGlobal) : m_vm(vm), m_ref(object) {
  if (object == nullptr || !makeGlobal) return;
  m_ref = m_vm.Attach()->NewGlobalRef(object);
  if (m_ref == nullptr) throw mirel::base::CMemoryException("jni/JniHelper", __LINE__, nullptr, nullptr);
}

CJniGlobalRef::~CJniGlobalRef() noexcept(false) {
  if (m_ref == nullptr) return;
  try {
    m_vm.Attach()->DeleteGlobalRef(m_ref);
  } catch (const mirel::base::CException& exception) {
    mirel::base::PrintToDebugOut(exception);
  }
}

}  // namespace torvan::jni
