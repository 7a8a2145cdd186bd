#include "java/Handler.h"

#include <torvan/java/Error.h>
#include <torvan/java/Failure.h>
#include <torvan/java/detail/Classes.h>
#include <torvan/java/detail/LocalScope.h>
#include <torvan/java/detail/NewObject.h>
#include <torvan/java/detail/Pending.h>
#include <torvan/java/detail/Shared.h>

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>

#include "java/HandlerBytes.h"
#include "java/HandlerNatives.h"

namespace torvan::java::detail {

namespace {

constexpr std::string_view Digits = "0000000000000000";

HandlerClass s_made{};  // filled step by step
std::atomic<const HandlerClass*> s_ready{nullptr};

// The name is this copy's own: two copies of the layer in a process would else share one class and its natives.
std::string OwnDigits() {
  std::string digits(Digits.size(), '0');
  auto address = reinterpret_cast<std::uintptr_t>(&s_made);
  for (std::size_t i = digits.size(); i-- > 0; address >>= 4) digits[i] = "0123456789abcdef"[address & 15];
  return digits;
}

std::string WithOwnDigits(std::string text) {
  const std::string own = OwnDigits();
  for (std::size_t at = 0; (at = text.find(Digits, at)) != std::string::npos; at += own.size()) {
    text.replace(at, own.size(), own);
  }
  return text;
}

template <typename Reference>
Reference Kept(JNIEnv* env, jobject local) {
  const LocalScope scope(env, local);
  CheckPending(env);
  const auto global = static_cast<Reference>(env->NewGlobalRef(local));
  if (global == nullptr) ThrowOutOfReferences(env);
  return global;
}

jmethodID MethodOf(JNIEnv* env, jclass type, const char* name, const std::string& descriptor) {
  const jmethodID id = env->GetMethodID(type, name, descriptor.c_str());
  CheckPending(env);
  return id;
}

// Returns one of the VM's own classes; null when it has none of that name. FindClass would ask the caller's loader.
jclass LoadIfThere(JNIEnv* env, const char* name) {
  try {
    return LoadClass(env, nullptr, name);
  } catch (const Error& missing) {
    if (missing.ClassName() != "java.lang.ClassNotFoundException") throw;
    return nullptr;
  }
}

// Finds the class when it cannot be defined because it already is: an earlier attempt defined it, but could not make a
// reference to it. Throws what defining it threw when the class is not there.
jclass FindDefined(JNIEnv* env, const std::string& name) {
  const LocalScope refused(env, env->ExceptionOccurred());
  env->ExceptionClear();
  if (jclass const found = LoadIfThere(env, name.c_str())) return found;
  if (refused.Get() == nullptr) ThrowOutOfReferences(env);
  env->Throw(static_cast<jthrowable>(refused.Get()));
  ThrowPending(env);
}

// In the VM's own loader, so that no loader of the host's can refuse it. It uses nothing but java.base.
jclass DefineHandler(JNIEnv* env) {
  const std::string bytes = WithOwnDigits({reinterpret_cast<const char*>(HandlerBytes), sizeof HandlerBytes});
  const std::string name = WithOwnDigits(HandlerName);
  jclass defined = env->DefineClass(name.c_str(), nullptr, reinterpret_cast<const jbyte*>(bytes.data()),
                                    static_cast<jsize>(bytes.size()));
  if (defined == nullptr) defined = FindDefined(env, name);
  return Kept<jclass>(env, defined);
}

void BindException(JNIEnv* env, ExceptionClass& made, const char* name) {
  if (made.type == nullptr) made.type = Kept<jclass>(env, LoadClass(env, nullptr, name));
  made.make = MethodOf(env, made.type, "<init>", "(Ljava/lang/String;)V");
}

void BindCleaner(JNIEnv* env, HandlerClass& made) {
  const LocalScope type(env, LoadIfThere(env, "java/lang/ref/Cleaner"));
  if (type.Get() == nullptr) return;  // before Java 9
  const auto cleaners = static_cast<jclass>(type.Get());
  made.registerWith =
      MethodOf(env, cleaners, "register", "(Ljava/lang/Object;Ljava/lang/Runnable;)Ljava/lang/ref/Cleaner$Cleanable;");
  const jmethodID create = env->GetStaticMethodID(cleaners, "create", "()Ljava/lang/ref/Cleaner;");
  CheckPending(env);
  made.cleaner = Kept<jobject>(env, env->CallStaticObjectMethodA(cleaners, create, nullptr));
}

// Makes a plan without functions.
jobject NewNoPlan(JNIEnv* env, const HandlerClass& made) {
  const auto arrayOf = [env](const char* element) {
    const LocalScope type(env, LoadClass(env, nullptr, element));
    jobject const array = env->NewObjectArray(0, static_cast<jclass>(type.Get()), nullptr);
    CheckPending(env);
    return array;
  };
  const LocalScope methods(env, arrayOf("java/lang/reflect/Method"));
  const LocalScope kinds(env, arrayOf("java/lang/String"));
  const LocalScope tests(env, arrayOf("[Ljava/lang/Class;"));
  CheckPending(env);
  jvalue arguments[5]{};
  arguments[0].l = made.type;
  arguments[1].l = methods.Get();
  arguments[2].l = kinds.Get();
  arguments[3].l = tests.Get();
  return Kept<jobject>(env, NewObject(env, made.type, made.newPlan, arguments));
}

void Make(JNIEnv* env, HandlerClass& made) {
  if (made.type == nullptr) made.type = DefineHandler(env);
  RegisterHandlerNatives(env, made.type);
  made.newPlan = MethodOf(env, made.type, "<init>",
                          "(Ljava/lang/Class;[Ljava/lang/reflect/Method;[Ljava/lang/String;[[Ljava/lang/Class;J)V");
  made.newHandler = MethodOf(env, made.type, "<init>", WithOwnDigits(std::string("(L") + HandlerName + ";J)V"));
  made.proxy = MethodOf(env, made.type, "proxy", "()Ljava/lang/Object;");
  made.owns = env->GetFieldID(made.type, "owns", "Z");
  CheckPending(env);
  BindException(env, made.runtimeException, "java/lang/RuntimeException");
  BindException(env, made.classCastException, "java/lang/ClassCastException");
  const LocalScope methods(env, LoadClass(env, nullptr, "java/lang/reflect/Method"));
  made.getDeclaringClass =
      MethodOf(env, static_cast<jclass>(methods.Get()), "getDeclaringClass", "()Ljava/lang/Class;");
  if (made.cleaner == nullptr) BindCleaner(env, made);
  if (made.noPlan == nullptr) made.noPlan = NewNoPlan(env, made);
}

// Never destroyed: Java calls until the process ends.
struct Locks {
  std::mutex making;
  std::mutex owned;
};
Locks& TheLocks() {
  static Locks& locks = *new Locks;
  return locks;
}

OwnedByJava* s_firstOwned = nullptr;

}  // namespace

const HandlerClass& TheHandlerClass(JNIEnv* env) {
  if (const HandlerClass* ready = s_ready.load(std::memory_order_acquire)) return *ready;
  const std::lock_guard<std::mutex> guard(TheLocks().making);
  if (s_ready.load(std::memory_order_relaxed) == nullptr) {
    Make(env, s_made);  // goes on from where it failed the last time
    s_ready.store(&s_made, std::memory_order_release);
  }
  return s_made;
}

OwnedByJava::OwnedByJava() noexcept {
  const std::lock_guard<std::mutex> guard(TheLocks().owned);
  m_next = s_firstOwned;
  if (m_next != nullptr) m_next->m_previous = this;
  s_firstOwned = this;
}

OwnedByJava::~OwnedByJava() {
  const std::lock_guard<std::mutex> guard(TheLocks().owned);
  (m_previous != nullptr ? m_previous->m_next : s_firstOwned) = m_next;
  if (m_next != nullptr) m_next->m_previous = m_previous;
}

void GiveToJava(JNIEnv* env, jobject object, OwnedByJava* owned) {
  const HandlerClass& handlers = TheHandlerClass(env);
  Released(owned);
  if (handlers.cleaner == nullptr) return;
  jvalue arguments[2]{};
  arguments[0].l = handlers.noPlan;
  arguments[1].j = BitsOf(owned);
  const LocalScope action(env, NewObject(env, handlers.type, handlers.newHandler, arguments));
  arguments[0].l = object;
  arguments[1].l = action.Get();
  const LocalScope made(env, env->CallObjectMethodA(handlers.cleaner, handlers.registerWith, arguments));
  CheckPending(env);
  // Set last: a Cleaner that fails, for example for want of stack, may have kept the action, which must then do
  // nothing.
  env->SetBooleanField(action.Get(), handlers.owns, JNI_TRUE);
}

}  // namespace torvan::java::detail
