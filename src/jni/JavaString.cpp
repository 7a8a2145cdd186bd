#include <torvan/jni/JavaString.h>

#include "jni/JniHelper.h"
#include "jni/JniText.h"

namespace torvan::jni {

using mirel::base::CUnicodeString;

CJavaString::CJavaString(const CJavaVm& vm, jstring string, bool makeGlobal) : CJavaObject(vm, string, makeGlobal) {}
CJavaString::CJavaString(const CJavaVm& vm, const RX::UniChar* text)
    : CJavaString(vm, CreateJavaString(vm, text), true) {}
CJavaString::CJavaString(const CJavaString& other) = default;
CJavaString::CJavaString(const CJavaObject& object) : CJavaObject(object) {}
CJavaString::~CJavaString() noexcept(false) = default;
CJavaString& CJavaString::operator=(const CJavaString& other) = default;

CJavaString& CJavaString::operator=(const RX::UniChar* text) {
  jstring string = CreateJavaString(m_vm, text);
  mirel::base::CRef<CJniGlobalRef> holder;
  if (string != nullptr) holder = new CJniGlobalRef(m_vm, string, true);
  // Intentional: the handle uses the local reference; the global one only keeps the string alive.
  m_ref = string;
  // The old string is released last: whatever the VM throws there, the handle already has the new one.
  m_holder = holder;
  return *this;
}

CJavaString::operator jstring() const noexcept { return static_cast<jstring>(m_ref); }

CJavaString::operator CUnicodeString() const {
  if (m_ref == nullptr) return CUnicodeString();
  JNIEnv* env = m_vm.Attach();
  // Intentional: when the VM returns no characters, the result is a null text and not a failure.
  return TakeCharacters(env, *this, env->GetStringChars(*this, nullptr));
}

}  // namespace torvan::jni
