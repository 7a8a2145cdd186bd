#include "Environment.h"

#include "Arguments.h"
#include "Threads.h"
#include "Tools.h"

namespace hotspot {

namespace {

HostVm s_vm;
__thread HostEnv t_env;

// Hands a call with the same parameters on.
template <auto Member>
struct Same;
template <typename Result, typename... Parameters, Result (*JNINativeInterface_::*Member)(JNIEnv*, Parameters...)>
struct Same<Member> {
  WINDOWS_ABI static Result Call(HostEnv* env, Parameters... parameters) {
    return (env->real->functions->*Member)(env->real, parameters...);
  }
};

// Forwards a call of a Java method to its form with an array, which is the member. Before the method's ID is its
// object or class, or both.
template <auto Member>
struct Variable;
template <typename Result, typename Target,
          Result (*JNINativeInterface_::*Member)(JNIEnv*, Target, jmethodID, const jvalue*)>
struct Variable<Member> {
  WINDOWS_ABI static Result List(HostEnv* env, Target target, jmethodID method, __builtin_ms_va_list list) {
    return (env->real->functions->*Member)(env->real, target, method, Arguments(method, list).Values());
  }
  WINDOWS_ABI static Result Call(HostEnv* env, Target target, jmethodID method, ...) {
    __builtin_ms_va_list list;
    __builtin_ms_va_start(list, method);
    const Arguments arguments(method, list);
    __builtin_ms_va_end(list);
    return (env->real->functions->*Member)(env->real, target, method, arguments.Values());
  }
};

template <typename Result, Result (*JNINativeInterface_::*Member)(JNIEnv*, jobject, jclass, jmethodID, const jvalue*)>
struct Variable<Member> {
  WINDOWS_ABI static Result List(HostEnv* env, jobject object, jclass javaClass, jmethodID method,
                                 __builtin_ms_va_list list) {
    return (env->real->functions->*Member)(env->real, object, javaClass, method, Arguments(method, list).Values());
  }
  WINDOWS_ABI static Result Call(HostEnv* env, jobject object, jclass javaClass, jmethodID method, ...) {
    __builtin_ms_va_list list;
    __builtin_ms_va_start(list, method);
    const Arguments arguments(method, list);
    __builtin_ms_va_end(list);
    return (env->real->functions->*Member)(env->real, object, javaClass, method, arguments.Values());
  }
};

WINDOWS_ABI jmethodID GetMethodId(HostEnv* env, jclass javaClass, const char* name, const char* descriptor) {
  jmethodID method = env->real->functions->GetMethodID(env->real, javaClass, name, descriptor);
  RememberMethod(method, descriptor);
  return method;
}

WINDOWS_ABI jmethodID GetStaticMethodId(HostEnv* env, jclass javaClass, const char* name, const char* descriptor) {
  jmethodID method = env->real->functions->GetStaticMethodID(env->real, javaClass, name, descriptor);
  RememberMethod(method, descriptor);
  return method;
}

WINDOWS_ABI jint GetJavaVm(HostEnv*, HostVm** vm) {
  *vm = &s_vm;
  return JNI_OK;
}

WINDOWS_ABI jint RegisterHostNatives(HostEnv* env, jclass javaClass, const JNINativeMethod* methods, jint count) {
  return RegisterNatives(env->real, javaClass, methods, count);
}

WINDOWS_ABI jint DestroyJavaVm(HostVm* vm) {
  EnterFromWindows();
  return vm->real->functions->DestroyJavaVM(vm->real);
}

using AttachFunction = jint (*JNIInvokeInterface_::*)(JavaVM*, void**, void*);
template <AttachFunction Attach>
WINDOWS_ABI jint AttachThread(HostVm* vm, HostEnv** env, void* arguments) {
  EnterFromWindows();
  void* real = nullptr;
  const jint result = (vm->real->functions->*Attach)(vm->real, &real, arguments);
  if (result == JNI_OK) *env = HostEnvOf(static_cast<JNIEnv*>(real));
  return result;
}

// The next attachment of the thread has JNI's own functions, whatever the host has replaced in this one.
OUT_OF_LINE void ForgetHostEnv() { t_env = {}; }

WINDOWS_ABI jint DetachThread(HostVm* vm) {
  EnterFromWindows();
  const jint result = vm->real->functions->DetachCurrentThread(vm->real);
  if (result == JNI_OK) ForgetHostEnv();
  return result;
}

WINDOWS_ABI jint GetEnv(HostVm* vm, HostEnv** env, jint version) {
  EnterFromWindows();
  constexpr jint toolsInterface = 0x30000000;
  if ((version & toolsInterface) == toolsInterface) {
    return GetTools(vm->real, reinterpret_cast<HostTools**>(env), version);
  }
  *env = nullptr;
  void* real = nullptr;
  const jint result = vm->real->functions->GetEnv(vm->real, &real, version);
  if (result == JNI_OK) *env = HostEnvOf(static_cast<JNIEnv*>(real));
  return result;
}

// The functions of JNI 10; what a later version adds is missing.
EnvFunctions MakeEnvFunctions() {
  EnvFunctions table{};
  const auto at = [&table](std::size_t offset) -> const void*& { return table[offset / sizeof(void*)]; };
#define SLOT(Name) at(offsetof(JNINativeInterface_, Name))
#define SAME(Name) SLOT(Name) = reinterpret_cast<const void*>(&Same<&JNINativeInterface_::Name>::Call);
#define VARIABLE(Name)                                                                        \
  SLOT(Name) = reinterpret_cast<const void*>(&Variable<&JNINativeInterface_::Name##A>::Call); \
  SLOT(Name##V) = reinterpret_cast<const void*>(&Variable<&JNINativeInterface_::Name##A>::List);
#include "JniFunctions.inc"
  SLOT(GetMethodID) = reinterpret_cast<const void*>(&GetMethodId);
  SLOT(GetStaticMethodID) = reinterpret_cast<const void*>(&GetStaticMethodId);
  SLOT(GetJavaVM) = reinterpret_cast<const void*>(&GetJavaVm);
  SLOT(RegisterNatives) = reinterpret_cast<const void*>(&RegisterHostNatives);
#undef VARIABLE
#undef SAME
#undef SLOT
  return table;
}

const void* const VmFunctions[] = {
    nullptr,
    nullptr,
    nullptr,
    reinterpret_cast<const void*>(&DestroyJavaVm),
    reinterpret_cast<const void*>(&AttachThread<&JNIInvokeInterface_::AttachCurrentThread>),
    reinterpret_cast<const void*>(&DetachThread),
    reinterpret_cast<const void*>(&GetEnv),
    reinterpret_cast<const void*>(&AttachThread<&JNIInvokeInterface_::AttachCurrentThreadAsDaemon>),
};

}  // namespace

HostVm* HostVmOf(JavaVM* real) {
  s_vm = {VmFunctions, real};
  return &s_vm;
}

EnvFunctions& HostFunctions() {
  static EnvFunctions functions = MakeEnvFunctions();
  return functions;
}

OUT_OF_LINE HostEnv* HostEnvOf(JNIEnv* real) {
  if (t_env.real != real) t_env = {HostFunctions().data(), real};
  return &t_env;
}

}  // namespace hotspot
