#include <torvan/jni/JavaObject.h>

#include <mirel/base/NullReferenceException.h>
#include <torvan/JavaVmException.h>
#include <torvan/jni/JavaClass.h>

#include "jni/JavaExceptionHelper.h"
#include "jni/JavaTypes.h"
#include "jni/JniHelper.h"
#include "jni/JniResult.h"
#include "jni/JniText.h"
#include "jni/VariableArguments.h"

namespace torvan::jni {

using mirel::base::CNullReferenceException;

CJavaObject::CJavaObject(const CJavaVm& vm, jobject object, bool makeGlobal) : m_vm(vm), m_ref(nullptr) {
  if (object == nullptr) return;
  m_holder = new CJniGlobalRef(vm, object, makeGlobal);
  m_ref = m_holder->GetReference();
}

CJavaObject::CJavaObject(const CJavaObject& other) = default;
CJavaObject::~CJavaObject() noexcept(false) = default;

CJavaObject& CJavaObject::operator=(const CJavaObject& other) {
  if (this == &other) return *this;
  m_vm = other.m_vm;
  m_ref = other.m_ref;
  // The own reference is released last: whatever the VM throws there, the handle is already the other's copy.
  m_holder = other.m_holder;
  return *this;
}

bool CJavaObject::operator==(const mirel::base::CNull&) const noexcept { return m_ref == nullptr; }
bool CJavaObject::operator!=(const mirel::base::CNull&) const noexcept { return m_ref != nullptr; }
bool CJavaObject::operator==(mirel::base::CNull*) const noexcept { return m_ref == nullptr; }
bool CJavaObject::operator!=(mirel::base::CNull*) const noexcept { return m_ref != nullptr; }

bool CJavaObject::operator==(const CJavaObject& other) const {
  if (this == &other) return true;
  if (m_vm != other.m_vm) return false;
  return m_vm.Attach()->IsSameObject(m_ref, other.m_ref) == JNI_TRUE;
}

bool CJavaObject::operator!=(const CJavaObject& other) const { return !(*this == other); }

namespace {

[[noreturn]] void Fail(unsigned int line, const char* text) {
  throw CJavaVmException("jni/JavaObject", line, text, nullptr);
}
[[noreturn]] void FailOfNull(unsigned int line) {
  throw CNullReferenceException("jni/JavaObject", line, nullptr, nullptr);
}

template <typename Text>
bool IsInstanceOfNamed(const CJavaVm& vm, jobject object, const Text* className) {
  if (object == nullptr) return false;
  JNIEnv* env = vm.Attach();
  jclass javaClass = env->FindClass(CJniText(className));
  if (javaClass == nullptr) Fail(__LINE__, "The specified class was not found.");
  return env->IsInstanceOf(object, javaClass) == JNI_TRUE;
}

}  // namespace

bool CJavaObject::IsInstanceOf(const char* className) const { return IsInstanceOfNamed(m_vm, m_ref, className); }
bool CJavaObject::IsInstanceOf(const RX::UniChar* className) const { return IsInstanceOfNamed(m_vm, m_ref, className); }

bool CJavaObject::IsInstanceOf(const CJavaClass& javaClass) const {
  if (m_ref == nullptr) return false;
  if (javaClass == mirel::base::CNull()) FailOfNull(__LINE__);
  return m_vm.Attach()->IsInstanceOf(m_ref, javaClass) == JNI_TRUE;
}

namespace {

// The text of a method that does not exist.
template <typename Text>
constexpr const char* methodNotFound = "The specified method was not found.";
// Intentional: with wide names the text speaks of a field, as in the field accessors.
template <>
constexpr const char* methodNotFound<RX::UniChar> = "The specified field was not found.";

void RequireObject(jobject object) {
  if (object == nullptr) FailOfNull(__LINE__);
}

jclass ClassOf(JNIEnv* env, jobject object) {
  jclass javaClass = env->GetObjectClass(object);
  if (javaClass == nullptr) Fail(__LINE__, "Failed to get the class of the object.");
  return javaClass;
}

template <typename Text>
jfieldID FieldOf(JNIEnv* env, jclass javaClass, const Text* name, const Text* signature) {
  jfieldID field = env->GetFieldID(javaClass, CJniText(name), CJniText(signature));
  if (field == nullptr) Fail(__LINE__, "The specified field was not found.");
  return field;
}

template <typename Text>
jmethodID MethodOf(JNIEnv* env, jclass javaClass, const Text* name, const Text* signature) {
  jmethodID method = env->GetMethodID(javaClass, CJniText(name), CJniText(signature));
  if (method == nullptr) Fail(__LINE__, methodNotFound<Text>);
  return method;
}

template <typename Type, typename Text>
typename Type::Host GetField(const CJavaVm& vm, jobject object, const Text* name, const Text* signature) {
  RequireObject(object);
  JNIEnv* env = vm.Attach();
  jclass javaClass = ClassOf(env, object);
  jfieldID field = FieldOf(env, javaClass, name, signature);
  CJniResult<typename Type::Host> result(env, Type::get, object, field);
  CheckJavaException(env);
  return result.ToHost(vm);
}

template <typename Type, typename Text>
void SetField(const CJavaVm& vm, jobject object, const Text* name, const Text* signature,
              typename Type::Argument value) {
  RequireObject(object);
  JNIEnv* env = vm.Attach();
  jclass javaClass = ClassOf(env, object);
  jfieldID field = FieldOf(env, javaClass, name, signature);
  (env->*Type::set)(object, field, value);
  CheckJavaException(env);
}

template <typename Type, typename Text>
typename Type::Host CallMethod(const CJavaVm& vm, jobject object, const Text* name, const Text* signature,
                               va_list arguments) {
  RequireObject(object);
  JNIEnv* env = vm.Attach();
  jclass javaClass = ClassOf(env, object);
  jmethodID method = MethodOf(env, javaClass, name, signature);
  CJniResult<typename Type::Host> result(env, Type::call, object, method, arguments);
  CheckJavaException(env);
  return result.ToHost(vm);
}

// Intentional: JNI is always passed the object's own class, so an override is called and not what it overrides.
template <typename Type, typename Text>
typename Type::Host CallNonvirtualMethod(const CJavaVm& vm, jobject object, const Text* name, const Text* signature,
                                         va_list arguments) {
  RequireObject(object);
  JNIEnv* env = vm.Attach();
  jclass javaClass = ClassOf(env, object);
  jmethodID method = MethodOf(env, javaClass, name, signature);
  CJniResult<typename Type::Host> result(env, Type::callNonvirtual, object, javaClass, method, arguments);
  CheckJavaException(env);
  return result.ToHost(vm);
}

}  // namespace

// The members: each forwards to its family; the macro starts the variable arguments where there are any.
// clang-format off
#define TORVAN_GETTER(Type, Text)                                                                  \
  types::Type::Host CJavaObject::Get##Type##Field(const Text* name, const Text* signature) const { \
    return GetField<types::Type>(m_vm, m_ref, name, signature);                                    \
  }
TORVAN_FIELD_TYPES(TORVAN_GETTER, char)
TORVAN_FIELD_TYPES(TORVAN_GETTER, RX::UniChar)
#undef TORVAN_GETTER

#define TORVAN_SETTER(Type, Text)                                                                                  \
  void CJavaObject::Set##Type##Field(const Text* name, const Text* signature, types::Type::Argument value) const { \
    SetField<types::Type>(m_vm, m_ref, name, signature, value);                                                    \
  }
TORVAN_FIELD_TYPES(TORVAN_SETTER, char)
TORVAN_FIELD_TYPES(TORVAN_SETTER, RX::UniChar)
#undef TORVAN_SETTER

#define TORVAN_CALLER(Type, Text)                                                                         \
  types::Type::Host CJavaObject::Call##Type##Method(const Text* name, const Text* signature, ...) const { \
    CVariableArguments arguments;                                                                         \
    va_start(arguments.list, signature);                                                                  \
    return CallMethod<types::Type>(m_vm, m_ref, name, signature, arguments.list);                         \
  }
TORVAN_RESULT_TYPES(TORVAN_CALLER, char)
TORVAN_RESULT_TYPES(TORVAN_CALLER, RX::UniChar)
#undef TORVAN_CALLER

#define TORVAN_CALLER(Type, Text)                                                                                   \
  types::Type::Host CJavaObject::CallNonvirtual##Type##Method(const Text* name, const Text* signature, ...) const { \
    CVariableArguments arguments;                                                                                   \
    va_start(arguments.list, signature);                                                                            \
    return CallNonvirtualMethod<types::Type>(m_vm, m_ref, name, signature, arguments.list);                         \
  }
TORVAN_RESULT_TYPES(TORVAN_CALLER, char)
TORVAN_RESULT_TYPES(TORVAN_CALLER, RX::UniChar)
#undef TORVAN_CALLER
// clang-format on

}  // namespace torvan::jni
