#include "java/Bindings.h"

#include <torvan/java/Failure.h>
#include <torvan/java/detail/LocalScope.h>

#include <atomic>
#include <string>

#include "java/PendingAside.h"

namespace torvan::java::detail {

namespace {

std::atomic<const Bindings*> s_bound{nullptr};

struct ClassRow {
  jclass Bindings::*place;
  const char* name;
};
struct MethodRow {
  jmethodID Bindings::*place;
  jclass Bindings::*owner;
  bool isStatic;
  const char* name;
  const char* descriptor;
};

// clang-format off
constexpr ClassRow Classes[] = {
    {&Bindings::classClass,        "java/lang/Class"},
    {&Bindings::threadClass,       "java/lang/Thread"},
    {&Bindings::loaderClass,       "java/lang/ClassLoader"},
    {&Bindings::throwableClass,    "java/lang/Throwable"},
    {&Bindings::stringWriterClass, "java/io/StringWriter"},
    {&Bindings::printWriterClass,  "java/io/PrintWriter"},
};
constexpr MethodRow Methods[] = {
    {&Bindings::forName,               &Bindings::classClass,        true,  "forName",               "(Ljava/lang/String;ZLjava/lang/ClassLoader;)Ljava/lang/Class;"},
    {&Bindings::getName,               &Bindings::classClass,        false, "getName",               "()Ljava/lang/String;"},
    {&Bindings::currentThread,         &Bindings::threadClass,       true,  "currentThread",         "()Ljava/lang/Thread;"},
    {&Bindings::getContextClassLoader, &Bindings::threadClass,       false, "getContextClassLoader", "()Ljava/lang/ClassLoader;"},
    {&Bindings::setContextClassLoader, &Bindings::threadClass,       false, "setContextClassLoader", "(Ljava/lang/ClassLoader;)V"},
    {&Bindings::getSystemClassLoader,  &Bindings::loaderClass,       true,  "getSystemClassLoader",  "()Ljava/lang/ClassLoader;"},
    {&Bindings::getMessage,            &Bindings::throwableClass,    false, "getMessage",            "()Ljava/lang/String;"},
    {&Bindings::getCause,              &Bindings::throwableClass,    false, "getCause",              "()Ljava/lang/Throwable;"},
    {&Bindings::printStackTrace,       &Bindings::throwableClass,    false, "printStackTrace",       "(Ljava/io/PrintWriter;)V"},
    {&Bindings::newStringWriter,       &Bindings::stringWriterClass, false, "<init>",                "()V"},
    {&Bindings::toString,              &Bindings::stringWriterClass, false, "toString",              "()Ljava/lang/String;"},
    {&Bindings::newPrintWriter,        &Bindings::printWriterClass,  false, "<init>",                "(Ljava/io/Writer;)V"},
};
// clang-format on

// Errors of the VM itself, whose names are made now: there may be no memory or stack for that later.
constexpr const char* VmErrors[] = {"java/lang/OutOfMemoryError", "java/lang/StackOverflowError"};

[[noreturn]] void ThrowLacking(JNIEnv* env, const std::string& what) {
  env->ExceptionClear();
  throw StartFailure("java/Bindings", __LINE__, "This Java VM has no " + what);
}

jobject Kept(JNIEnv* env, jobject local, const char* what) {
  const LocalScope scope(env, local);
  jobject const global = local != nullptr && env->ExceptionCheck() == JNI_FALSE ? env->NewGlobalRef(local) : nullptr;
  if (global == nullptr) ThrowLacking(env, what);
  return global;
}

// A host's library that Java code loaded joins with a context class loader that knows that code.
jobject FindLoader(JNIEnv* env, const Bindings& bindings) {
  const LocalScope thread(env, env->CallStaticObjectMethodA(bindings.threadClass, bindings.currentThread, nullptr));
  jobject context = nullptr;
  if (env->ExceptionCheck() == JNI_FALSE)
    context = env->CallObjectMethodA(thread.Get(), bindings.getContextClassLoader, nullptr);
  if (env->ExceptionCheck() != JNI_FALSE) env->ExceptionClear();
  if (context != nullptr) return Kept(env, context, "context class loader");
  return Kept(env, env->CallStaticObjectMethodA(bindings.loaderClass, bindings.getSystemClassLoader, nullptr),
              "system class loader");
}

}  // namespace

const Bindings* Bound() noexcept { return s_bound.load(std::memory_order_acquire); }

void Bind(JNIEnv* env) {
  if (Bound() != nullptr) return;
  const PendingAside pending(env);
  static Bindings bindings{};
  for (const ClassRow& row : Classes) {
    bindings.*row.place = static_cast<jclass>(Kept(env, env->FindClass(row.name), row.name));
  }
  for (const MethodRow& row : Methods) {
    jclass const owner = bindings.*row.owner;
    jmethodID const id = row.isStatic ? env->GetStaticMethodID(owner, row.name, row.descriptor)
                                      : env->GetMethodID(owner, row.name, row.descriptor);
    if (id == nullptr) ThrowLacking(env, std::string(row.name) + row.descriptor);
    bindings.*row.place = id;
  }
  for (const char* name : VmErrors) {
    const LocalScope type(env, env->FindClass(name));
    if (type.Get() == nullptr) ThrowLacking(env, name);
    const LocalScope text(env, env->CallObjectMethodA(type.Get(), bindings.getName, nullptr));
    if (env->ExceptionCheck() != JNI_FALSE) ThrowLacking(env, name);
  }
  bindings.loader = FindLoader(env, bindings);
  s_bound.store(&bindings, std::memory_order_release);
}

void SetContextClassLoader(JNIEnv* env, bool replaces) noexcept {
  const Bindings* const bindings = Bound();
  if (bindings == nullptr) return;
  const PendingAside pending(env);
  const LocalScope thread(env, env->CallStaticObjectMethodA(bindings->threadClass, bindings->currentThread, nullptr));
  jobject own = nullptr;
  if (env->ExceptionCheck() == JNI_FALSE && !replaces)
    own = env->CallObjectMethodA(thread.Get(), bindings->getContextClassLoader, nullptr);
  const LocalScope known(env, own);
  jvalue loader{};
  loader.l = bindings->loader;
  if (env->ExceptionCheck() == JNI_FALSE && own == nullptr)
    env->CallVoidMethodA(thread.Get(), bindings->setContextClassLoader, &loader);
  env->ExceptionClear();
}

}  // namespace torvan::java::detail
