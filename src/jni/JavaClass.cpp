#include <torvan/jni/JavaClass.h>

#include <mirel/base/MemoryException.h>
#include <mirel/base/NullReferenceException.h>
#include <torvan/JavaVmException.h>

#include "jni/JavaExceptionHelper.h"
#include "jni/JavaTypes.h"
#include "jni/JniHelper.h"
#include "jni/JniResult.h"
#include "jni/JniText.h"
#include "jni/VariableArguments.h"

namespace torvan::jni {

using mirel::base::CMemoryException;
using mirel::base::CNullReferenceException;

CJavaClass::CJavaClass(const CJavaVm& vm, jclass javaClass, bool makeGlobal) : CJavaObject(vm, javaClass, makeGlobal) {}
CJavaClass::CJavaClass(const CJavaClass& other) = default;
CJavaClass::~CJavaClass() noexcept(false) = default;
CJavaClass& CJavaClass::operator=(const CJavaClass& other) = default;

CJavaClass::operator jclass() const noexcept { return static_cast<jclass>(m_ref); }

namespace {

[[noreturn]] void Fail(unsigned int line, const char* text) {
  throw CJavaVmException("jni/JavaClass", line, text, nullptr);
}
[[noreturn]] void FailWithoutMemory(unsigned int line) {
  throw CMemoryException("jni/JavaClass", line, nullptr, nullptr);
}
[[noreturn]] void FailOfNull(unsigned int line) {
  throw CNullReferenceException("jni/JavaClass", line, nullptr, nullptr);
}

void RequireClass(jclass javaClass) {
  if (javaClass == nullptr) FailOfNull(__LINE__);
}

// Intentional: memory is reported before the pending exception is read, so a constructor that throws looks like a lack
// of memory.
void RequireInstance(jobject object) {
  if (object == nullptr) FailWithoutMemory(__LINE__);
}

template <typename Text>
jobject ConstructObject(const CJavaVm& vm, jclass javaClass, const Text* signature, va_list arguments) {
  RequireClass(javaClass);
  JNIEnv* env = vm.Attach();
  jmethodID constructor = env->GetMethodID(javaClass, "<init>", CJniText(signature));
  if (constructor == nullptr) Fail(__LINE__, "The specified constructor was not found.");
  jobject object = env->NewObjectV(javaClass, constructor, arguments);
  RequireInstance(object);
  CheckJavaException(env);
  return object;
}

}  // namespace

CJavaObject CJavaClass::AllocObject() const {
  RequireClass(*this);
  JNIEnv* env = m_vm.Attach();
  jobject object = env->AllocObject(*this);
  RequireInstance(object);
  CheckJavaException(env);
  return CJavaObject(m_vm, object, true);
}

CJavaObject CJavaClass::NewObject(const char* signature, ...) const {
  CVariableArguments arguments;
  va_start(arguments.list, signature);
  return CJavaObject(m_vm, ConstructObject(m_vm, *this, signature, arguments.list), true);
}

CJavaObject CJavaClass::NewObject(const RX::UniChar* signature, ...) const {
  CVariableArguments arguments;
  va_start(arguments.list, signature);
  return CJavaObject(m_vm, ConstructObject(m_vm, *this, signature, arguments.list), true);
}

namespace {

// Intentional: here and below a null class is not refused; the VM is asked with it.
template <typename Text>
jfieldID StaticFieldOf(JNIEnv* env, jclass javaClass, const Text* name, const Text* signature) {
  jfieldID field = env->GetStaticFieldID(javaClass, CJniText(name), CJniText(signature));
  if (field == nullptr) Fail(__LINE__, "The specified static field was not found.");
  return field;
}

template <typename Text>
jmethodID StaticMethodOf(JNIEnv* env, jclass javaClass, const Text* name, const Text* signature) {
  jmethodID method = env->GetStaticMethodID(javaClass, CJniText(name), CJniText(signature));
  if (method == nullptr) Fail(__LINE__, "The specified static method was not found.");
  return method;
}

template <typename Type, typename Text>
typename Type::Host GetStaticField(const CJavaVm& vm, jclass javaClass, const Text* name, const Text* signature) {
  JNIEnv* env = vm.Attach();
  jfieldID field = StaticFieldOf(env, javaClass, name, signature);
  CJniResult<typename Type::Host> result(env, Type::getStatic, javaClass, field);
  CheckJavaException(env);
  return result.ToHost(vm);
}

template <typename Type, typename Text>
void SetStaticField(const CJavaVm& vm, jclass javaClass, const Text* name, const Text* signature,
                    typename Type::Argument value) {
  JNIEnv* env = vm.Attach();
  jfieldID field = StaticFieldOf(env, javaClass, name, signature);
  (env->*Type::setStatic)(javaClass, field, value);
  CheckJavaException(env);
}

template <typename Type, typename Text>
typename Type::Host CallStaticMethod(const CJavaVm& vm, jclass javaClass, const Text* name, const Text* signature,
                                     va_list arguments) {
  JNIEnv* env = vm.Attach();
  jmethodID method = StaticMethodOf(env, javaClass, name, signature);
  CJniResult<typename Type::Host> result(env, Type::callStatic, javaClass, method, arguments);
  CheckJavaException(env);
  return result.ToHost(vm);
}

}  // namespace

// The members: each forwards to its family; the macro starts the variable arguments where there are any.
// clang-format off
#define TORVAN_GETTER(Type, Text)                                                                       \
  types::Type::Host CJavaClass::GetStatic##Type##Field(const Text* name, const Text* signature) const { \
    return GetStaticField<types::Type>(m_vm, *this, name, signature);                                   \
  }
TORVAN_FIELD_TYPES(TORVAN_GETTER, char)
TORVAN_FIELD_TYPES(TORVAN_GETTER, RX::UniChar)
#undef TORVAN_GETTER

#define TORVAN_SETTER(Type, Text)                                                                                       \
  void CJavaClass::SetStatic##Type##Field(const Text* name, const Text* signature, types::Type::Argument value) const { \
    SetStaticField<types::Type>(m_vm, *this, name, signature, value);                                                   \
  }
TORVAN_FIELD_TYPES(TORVAN_SETTER, char)
TORVAN_FIELD_TYPES(TORVAN_SETTER, RX::UniChar)
#undef TORVAN_SETTER

#define TORVAN_CALLER(Type, Text)                                                                              \
  types::Type::Host CJavaClass::CallStatic##Type##Method(const Text* name, const Text* signature, ...) const { \
    CVariableArguments arguments;                                                                              \
    va_start(arguments.list, signature);                                                                       \
    return CallStaticMethod<types::Type>(m_vm, *this, name, signature, arguments.list);                        \
  }
TORVAN_RESULT_TYPES(TORVAN_CALLER, char)
TORVAN_RESULT_TYPES(TORVAN_CALLER, RX::UniChar)
#undef TORVAN_CALLER
// clang-format on

}  // namespace torvan::jni
