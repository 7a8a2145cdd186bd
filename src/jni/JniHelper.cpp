#include "jni/JniHelper.h"

#include <mirel/base/MemoryException.h>

namespace torvan::jni {

using mirel::base::CMemoryException;

namespace {

[[noreturn]] void FailWithoutMemory(unsigned int line) {
  throw CMemoryException("jni/JniHelper", line, nullptr, nullptr);
}

}  // namespace

CJniGlobalRef::CJniGlobalRef(const CJavaVm& vm, jobject object, bool makeGlobal) : m_vm(vm), m_ref(object) {
  if (object == nullptr || !makeGlobal) return;
  m_ref = m_vm.Attach()->NewGlobalRef(object);
  if (m_ref == nullptr) FailWithoutMemory(__LINE__);
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
