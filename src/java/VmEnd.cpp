#include <torvan/java/Failure.h>
#include <torvan/java/detail/Environment.h>
#include <torvan/java/detail/LocalScope.h>
#include <torvan/java/detail/Pending.h>

#include <thread>

#include "java/Threads.h"
#include "java/VmState.h"

namespace torvan::java::detail {

namespace {

using Clock = std::chrono::steady_clock;

// The threads of Java, as far as the end of the VM is concerned. Everything is looked up here: a VM ends once.
class JavaThreads {
 public:
  explicit JavaThreads(JNIEnv* env) : m_env(env) {
    jclass const threads = Find("java/lang/Thread");
    jclass const groups = Find("java/lang/ThreadGroup");
    m_threadClass = threads;
    m_isDaemon = env->GetMethodID(threads, "isDaemon", "()Z");
    m_getStackTrace = env->GetMethodID(threads, "getStackTrace", "()[Ljava/lang/StackTraceElement;");
    m_enumerate = env->GetMethodID(groups, "enumerate", "([Ljava/lang/Thread;)I");
    m_activeCount = env->GetMethodID(groups, "activeCount", "()I");
    const jmethodID current = env->GetStaticMethodID(threads, "currentThread", "()Ljava/lang/Thread;");
    const jmethodID getGroup = env->GetMethodID(threads, "getThreadGroup", "()Ljava/lang/ThreadGroup;");
    const jmethodID getParent = env->GetMethodID(groups, "getParent", "()Ljava/lang/ThreadGroup;");
    CheckPending(env);
    m_current = env->CallStaticObjectMethodA(threads, current, nullptr);
    CheckPending(env);
    for (jobject group = Call(m_current, getGroup); group != nullptr; group = Call(group, getParent)) m_root = group;
  }

  // Whether Java has called the current thread. It finds itself asking for the trace.
  bool IsInJava() {
    const LocalScope trace(m_env, Call(m_current, m_getStackTrace));
    return m_env->GetArrayLength(static_cast<jarray>(trace.Get())) > 1;
  }

  // Whether any other thread keeps the VM from being destroyed. As long as Java cannot tell, one does.
  bool OthersRun() {
    try {
      return AskForOthers();
    } catch (const Failure&) {
      return true;
    }
  }

 private:
  static constexpr jint Spare = 16;  // for threads that start meanwhile

  bool AskForOthers() {
    const jint count = m_env->CallIntMethodA(m_root, m_activeCount, nullptr);
    CheckPending(m_env);
    const LocalScope list(m_env, m_env->NewObjectArray(count + Spare, m_threadClass, nullptr));
    CheckPending(m_env);
    jvalue argument{};
    argument.l = list.Get();
    const jint found = m_env->CallIntMethodA(m_root, m_enumerate, &argument);
    CheckPending(m_env);
    for (jint i = 0; i < found; ++i) {
      const LocalScope thread(m_env, m_env->GetObjectArrayElement(static_cast<jobjectArray>(list.Get()), i));
      CheckPending(m_env);
      if (m_env->IsSameObject(thread.Get(), m_current) != JNI_FALSE) continue;
      const jboolean isDaemon = m_env->CallBooleanMethodA(thread.Get(), m_isDaemon, nullptr);
      CheckPending(m_env);
      if (isDaemon == JNI_FALSE) return true;
    }
    return false;
  }

  jclass Find(const char* name) {
    jclass const found = m_env->FindClass(name);
    CheckPending(m_env);
    return found;
  }
  jobject Call(jobject object, jmethodID method) {
    jobject const result = m_env->CallObjectMethodA(object, method, nullptr);
    CheckPending(m_env);
    return result;
  }

  JNIEnv* m_env;
  jclass m_threadClass = nullptr;
  jmethodID m_isDaemon = nullptr;
  jmethodID m_getStackTrace = nullptr;
  jmethodID m_enumerate = nullptr;
  jmethodID m_activeCount = nullptr;
  jobject m_current = nullptr;
  jobject m_root = nullptr;
};

// Also for C++ to close what it has open of Java's memory: it may be written, and the garbage collector may wait for
// it.
bool WaitForOthers(JavaThreads& threads, std::chrono::milliseconds grace) {
  constexpr std::chrono::milliseconds step{5};
  for (const auto end = Clock::now() + grace; OpenMemory::IsOpen() || threads.OthersRun();) {
    if (Clock::now() >= end) return false;
    std::this_thread::sleep_for(step);
  }
  return true;
}

// What the VM itself calls when it is destroyed.
void RunShutdownHooks(JNIEnv* env) {
  jclass const shutdown = env->FindClass("java/lang/Shutdown");
  CheckPending(env);
  const jmethodID run = env->GetStaticMethodID(shutdown, "shutdown", "()V");
  CheckPending(env);
  env->CallStaticVoidMethodA(shutdown, run, nullptr);
  CheckPending(env);
}

}  // namespace

VmEnd EndNow(JavaVM* vm, JNIEnv* env, std::chrono::milliseconds grace) {
  if (OpenMemory::IsOpenInThisThread()) {
    throw Misuse("java/VmEnd", __LINE__, "The Java VM cannot be ended while Elements are open in this thread");
  }
  CheckPending(env);
  if (env->PushLocalFrame(32) != JNI_OK) CheckPending(env);
  JavaThreads threads(env);
  if (threads.IsInJava()) {
    env->PopLocalFrame(nullptr);
    throw Misuse("java/VmEnd", __LINE__, "The Java VM cannot be ended by a thread that Java has called");
  }
  EndCalls();
  ForgetEnv();
  VmState& state = TheVm();
  if (!WaitForOthers(threads, grace)) {
    RunShutdownHooks(env);
    env->PopLocalFrame(nullptr);
    state.end = VmEnd::LeftRunning;
  } else {
    UseVm(nullptr);
    // As a thread that is not attached: the VM takes one that is for a daemon in native code, and waits for it.
    vm->DetachCurrentThread();
    vm->DestroyJavaVM();
    state.end = VmEnd::Destroyed;
  }
  return *state.end;
}

}  // namespace torvan::java::detail
