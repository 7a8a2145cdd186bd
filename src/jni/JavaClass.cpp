#include <mirel/base/MemoryException.h>
#include <mirel/base/NullReferenceException.h>
#include <torvan/JavaVmException.h>
#include <torvan/jni/JavaClass.h>

#include "jni/ArgumentList.h"
#include "jni/JavaExceptionHelper.h"
#include "jni/JavaTypes.h"
#include "jni/JniHelper.h"
#include "jni/JniResult.h"
#include "jni/JniText.h"

namespace torvan::jni {

using mirel::base::CMemoryException;
using mirel::base::CNullReferenceException;

CJavaClass::CJavaClass(const CJavaVm& vm, jclass javaClass, bool makeGlobal) : CJavaObject(vm, javaClass, makeGlobal) {}
CJavaClass::CJavaClass(const CJavaClass& other) = default;
CJavaClass::~CJavaClass() noexcept(false) = default;
CJavaClass& CJavaClass::operator=(const CJavaClass& other) = default;

CJavaClass::operator jclass() const noexcept { return static_cast<jclass>(m_ref); }

namespace {

void RequireClass(jclass javaClass) {
  if (javaClass == nullptr) throw CNullReferenceException("jni/JavaClass", __LINE__, nullptr, nullptr);
}

// Intentional: what is pending is not looked at first, so a constructor that throws is reported as a lack of memory.
void RequireInstance(jobject object) {
  if (object == nullptr) throw CMemoryException("jni/JavaClass", __LINE__, nullptr, nullptr);
}

template <typename Text>
jobject ConstructObject(const CJavaVm& vm, jclass javaClass, const Text* signature, va_list arguments) {
  RequireClass(javaClass);
  JNIEnv* env = vm.Attach();
  jmethodID constructor = env->GetMethodID(javaClass, "<init>", CJniText(signature));
  if (constructor == nullptr) {
    throw CJavaVmException("jni/JavaClass", __LINE__, "The specified constructor was not found.", nullptr);
  }
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
  CArgumentList arguments;
  va_start(arguments.list, signature);
  return CJavaObject(m_vm, ConstructObject(m_vm, *this, signature, arguments.list), true);
}

CJavaObject CJavaClass::NewObject(const RX::UniChar* signature, ...) const {
  CArgumentList arguments;
  va_start(arguments.list, signature);
  return CJavaObject(m_vm, ConstructObject(m_vm, *this, signature, arguments.list), true);
}

namespace {

// Intentional: here and below the class is not tested for null; the VM is asked about it as it is.
template <typename Text>
jfieldID StaticFieldOf(JNIEnv* env, jclass javaClass, const Text* name, const Text* signature) {
  jfieldID field = env->GetStaticFieldID(javaClass, CJniText(name), CJniText(signature));
  if (field == nullptr) {
    throw CJavaVmException("jni/JavaClass", __LINE__, "The specified static field was not found.", nullptr);
  }
  return field;
}

template <typename Text>
jmethodID StaticMethodOf(JNIEnv* env, jclass javaClass, const Text* name, const Text* signature) {
  jmethodID method = env->GetStaticMethodID(javaClass, CJniText(name), CJniText(signature));
  if (method == nullptr) {
    throw CJavaVmException("jni/JavaClass", __LINE__, "The specified static method was not found.", nullptr);
  }
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

// The members: each forwards to its family, the macro starting the variable arguments where there are some.
// clang-format off
#define TORVAN_GETTER(Type, Text)                                                                       \
  types::Type::Host CJavaClass::GetStatic##Type##Field(const Text* name, const Text* signature) const { \
    return GetStaticField<types::Type>(m_vm, *this, name, signature);                                   \
  }
TORVAN_GETTER(Object,  char)  TORVAN_GETTER(Object,  RX::UniChar)
TORVAN_GETTER(Boolean, char)  TORVAN_GETTER(Boolean, RX::UniChar)
TORVAN_GETTER(Byte,    char)  TORVAN_GETTER(Byte,    RX::UniChar)
TORVAN_GETTER(Char,    char)  TORVAN_GETTER(Char,    RX::UniChar)
TORVAN_GETTER(Short,   char)  TORVAN_GETTER(Short,   RX::UniChar)
TORVAN_GETTER(Int,     char)  TORVAN_GETTER(Int,     RX::UniChar)
TORVAN_GETTER(Long,    char)  TORVAN_GETTER(Long,    RX::UniChar)
TORVAN_GETTER(Float,   char)  TORVAN_GETTER(Float,   RX::UniChar)
TORVAN_GETTER(Double,  char)  TORVAN_GETTER(Double,  RX::UniChar)
#undef TORVAN_GETTER

#define TORVAN_SETTER(Type, Text)                                                                                       \
  void CJavaClass::SetStatic##Type##Field(const Text* name, const Text* signature, types::Type::Argument value) const { \
    SetStaticField<types::Type>(m_vm, *this, name, signature, value);                                                   \
  }
TORVAN_SETTER(Object,  char)  TORVAN_SETTER(Object,  RX::UniChar)
TORVAN_SETTER(Boolean, char)  TORVAN_SETTER(Boolean, RX::UniChar)
TORVAN_SETTER(Byte,    char)  TORVAN_SETTER(Byte,    RX::UniChar)
TORVAN_SETTER(Char,    char)  TORVAN_SETTER(Char,    RX::UniChar)
TORVAN_SETTER(Short,   char)  TORVAN_SETTER(Short,   RX::UniChar)
TORVAN_SETTER(Int,     char)  TORVAN_SETTER(Int,     RX::UniChar)
TORVAN_SETTER(Long,    char)  TORVAN_SETTER(Long,    RX::UniChar)
TORVAN_SETTER(Float,   char)  TORVAN_SETTER(Float,   RX::UniChar)
TORVAN_SETTER(Double,  char)  TORVAN_SETTER(Double,  RX::UniChar)
#undef TORVAN_SETTER

#define TORVAN_CALLER(Type, Text)                                                                              \
  types::Type::Host CJavaClass::CallStatic##Type##Method(const Text* name, const Text* signature, ...) const { \
    CArgumentList arguments;                                                                                   \
    va_start(arguments.list, signature);                                                                       \
    return CallStaticMethod<types::Type>(m_vm, *this, name, signature, arguments.list);                        \
  }
TORVAN_CALLER(Object,  char)  TORVAN_CALLER(Object,  RX::UniChar)
TORVAN_CALLER(Boolean, char)  TORVAN_CALLER(Boolean, RX::UniChar)
TORVAN_CALLER(Byte,    char)  TORVAN_CALLER(Byte,    RX::UniChar)
TORVAN_CALLER(Char,    char)  TORVAN_CALLER(Char,    RX::UniChar)
TORVAN_CALLER(Short,   char)  TORVAN_CALLER(Short,   RX::UniChar)
TORVAN_CALLER(Int,     char)  TORVAN_CALLER(Int,     RX::UniChar)
TORVAN_CALLER(Long,    char)  TORVAN_CALLER(Long,    RX::UniChar)
TORVAN_CALLER(Float,   char)  TORVAN_CALLER(Float,   RX::UniChar)
TORVAN_CALLER(Double,  char)  TORVAN_CALLER(Double,  RX::UniChar)
TORVAN_CALLER(Void,    char)  TORVAN_CALLER(Void,    RX::UniChar)
#undef TORVAN_CALLER
// clang-format on

}  // namespace torvan::jni
