#include <torvan/jni/JavaVm.h>

#include <mirel/base/MemoryException.h>
#include <torvan/JavaVmException.h>
#include <torvan/jni/JavaClass.h>
#include <torvan/jni/JavaString.h>

#include "jni/JavaExceptionHelper.h"
#include "jni/JavaVmImpl.h"
#include "jni/JniText.h"
#include "jni/VariableArguments.h"

namespace torvan::jni {

using mirel::base::CMemoryException;

namespace {

[[noreturn]] void Fail(unsigned int line, const char* text) {
  throw CJavaVmException("jni/JavaVm", line, text, nullptr);
}
[[noreturn]] void FailWithoutMemory(unsigned int line) { throw CMemoryException("jni/JavaVm", line, nullptr, nullptr); }

}  // namespace

CJavaVm::CJavaVm(const mirel::base::CRef<CJavaVmImpl>& impl) : m_impl(impl), m_vm(m_impl->GetVm()) {}
CJavaVm::CJavaVm(const CJavaVm& other) = default;
CJavaVm::~CJavaVm() noexcept(false) = default;

CJavaVm& CJavaVm::operator=(const CJavaVm& other) {
  if (this == &other) return *this;
  m_vm = other.m_vm;
  // The own reference is released last: whatever is thrown there, the handle is already the other's copy.
  m_impl = other.m_impl;
  return *this;
}

bool CJavaVm::operator==(const CJavaVm& other) const noexcept { return m_vm == other.m_vm; }
bool CJavaVm::operator!=(const CJavaVm& other) const noexcept { return m_vm != other.m_vm; }

JNIEnv* CJavaVm::Attach() const {
  void* env = nullptr;
  if (m_vm->AttachCurrentThread(&env, nullptr) != JNI_OK)
    Fail(__LINE__, "Failed ot attach the current thread to the underlying Java VM.");  // sic
  return static_cast<JNIEnv*>(env);
}

void CJavaVm::Detach() const {
  if (m_vm->DetachCurrentThread() != JNI_OK)
    Fail(__LINE__, "Failed to detach the curretn thread from the underlying Java VM.");  // sic
}

namespace {

jclass ClassNamed(JNIEnv* env, const char* name) {
  jclass javaClass = env->FindClass(name);
  if (javaClass == nullptr) Fail(__LINE__, "The specified class was not found.");
  return javaClass;
}

// Intentional: the three operations convert wide names at different moments, which shows when memory runs out.
// FindClass and NewObject convert the class name before they attach, AllocObject afterwards; NewObject converts the
// signature when it has the class.
template <typename Unit>
jclass FindClassIn(const CJavaVm& vm, const Unit* name) {
  const CJniText jniName(name);
  return ClassNamed(vm.Attach(), jniName);
}

template <typename Unit>
jobject AllocObjectIn(const CJavaVm& vm, const Unit* className) {
  JNIEnv* env = vm.Attach();
  jobject object = env->AllocObject(ClassNamed(env, CJniText(className)));
  if (object == nullptr) FailWithoutMemory(__LINE__);
  CheckJavaException(env);
  return object;
}

template <typename Unit>
jobject NewObjectIn(const CJavaVm& vm, const Unit* className, const Unit* signature, va_list arguments) {
  const CJniText jniClassName(className);
  JNIEnv* env = vm.Attach();
  jclass javaClass = ClassNamed(env, jniClassName);
  jmethodID constructor = env->GetMethodID(javaClass, "<init>", CJniText(signature));
  if (constructor == nullptr) Fail(__LINE__, "The specified constructor was not found.");
  jobject object = env->NewObjectV(javaClass, constructor, arguments);
  if (object == nullptr) FailWithoutMemory(__LINE__);
  CheckJavaException(env);
  return object;
}

}  // namespace

CJavaClass CJavaVm::FindClass(const char* name) const { return CJavaClass(*this, FindClassIn(*this, name), true); }

CJavaClass CJavaVm::FindClass(const RX::UniChar* name) const {
  return CJavaClass(*this, FindClassIn(*this, name), true);
}

CJavaObject CJavaVm::AllocObject(const char* className) const {
  return CJavaObject(*this, AllocObjectIn(*this, className), true);
}

CJavaObject CJavaVm::AllocObject(const RX::UniChar* className) const {
  return CJavaObject(*this, AllocObjectIn(*this, className), true);
}

CJavaObject CJavaVm::NewObject(const char* className, const char* signature, ...) const {
  CVariableArguments arguments;
  va_start(arguments.list, signature);
  return CJavaObject(*this, NewObjectIn(*this, className, signature, arguments.list), true);
}

CJavaObject CJavaVm::NewObject(const RX::UniChar* className, const RX::UniChar* signature, ...) const {
  CVariableArguments arguments;
  va_start(arguments.list, signature);
  return CJavaObject(*this, NewObjectIn(*this, className, signature, arguments.list), true);
}

CJavaString CJavaVm::NewString(const RX::UniChar* text) const { return CJavaString(*this, text); }

}  // namespace torvan::jni
