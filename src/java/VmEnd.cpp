#include <torvan/java/Failure.h>
#include <torvan/java/detail/Environment.h>
#include <torvan/java/detail/LocalScope.h>
#include <torvan/java/detail/Pending.h>

#include <algorithm>
#include <exception>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include "java/PendingAside.h"
#include "java/Threads.h"
#include "java/VmState.h"

namespace torvan::java::detail {

namespace {

using Clock = std::chrono::steady_clock;

[[noreturn]] void RefuseEnd(unsigned int line, const std::string& reason) {
  throw Misuse("java/VmEnd", line, "The Java VM cannot be ended " + reason);
}

// The threads of Java, as far as the end of the VM is concerned. Everything is looked up here: a VM ends once.
class JavaThreads {
 public:
  explicit JavaThreads(JNIEnv* env) : m_env(env) {
    jclass const threads = Find("java/lang/Thread");
    jclass const groups = Find("java/lang/ThreadGroup");
    m_threadClass = threads;
    m_isDaemon = Method(threads, "isDaemon", "()Z");
    m_getStackTrace = Method(threads, "getStackTrace", "()[Ljava/lang/StackTraceElement;");
    m_enumerate = Method(groups, "enumerate", "([Ljava/lang/Thread;)I");
    m_activeCount = Method(groups, "activeCount", "()I");
    const jmethodID getGroup = Method(threads, "getThreadGroup", "()Ljava/lang/ThreadGroup;");
    const jmethodID getParent = Method(groups, "getParent", "()Ljava/lang/ThreadGroup;");
    const jmethodID current = env->GetStaticMethodID(threads, "currentThread", "()Ljava/lang/Thread;");
    CheckPending(env);
    m_current = env->CallStaticObjectMethodA(threads, current, nullptr);
    CheckPending(env);
    for (jobject group = Call(m_current, getGroup); group != nullptr; group = Call(group, getParent)) m_root = group;
  }

  // Whether Java has called the current thread. One line of its stack trace is the request for the trace itself.
  bool IsInJava() {
    const LocalScope trace(m_env, Call(m_current, m_getStackTrace));
    return m_env->GetArrayLength(static_cast<jarray>(trace.Get())) > 1;
  }

  // Whether any other thread keeps the VM from being destroyed. True as long as Java cannot tell.
  bool OthersRun() {
    try {
      return AskForOthers();
    } catch (const std::exception&) {
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
  jmethodID Method(jclass type, const char* name, const char* descriptor) {
    const jmethodID found = m_env->GetMethodID(type, name, descriptor);
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

// Also waits until C++ has closed the arrays that it uses in place: what it has written must arrive, and the garbage
// collector may wait for it.
bool WaitForOthers(JavaThreads& threads, std::chrono::milliseconds grace) {
  using Milliseconds = std::chrono::milliseconds;
  constexpr Milliseconds step{5};
  const auto start = Clock::now();
  const auto longest = std::chrono::duration_cast<Milliseconds>(Clock::time_point::max() - start);
  for (const auto end = start + std::clamp(grace, Milliseconds(0), longest);
       OpenMemory::IsOpen() || threads.OthersRun();) {
    if (Clock::now() >= end) return false;
    std::this_thread::sleep_for(step);
  }
  return true;
}

// What the VM itself calls when it is destroyed.
void RunShutdownHooks(JNIEnv* env) {
  const LocalScope found(env, env->FindClass("java/lang/Shutdown"));
  CheckPending(env);
  const auto shutdown = static_cast<jclass>(found.Get());
  const jmethodID run = env->GetStaticMethodID(shutdown, "shutdown", "()V");
  CheckPending(env);
  env->CallStaticVoidMethodA(shutdown, run, nullptr);
  CheckPending(env);
}

// A frame for the local references that ending the VM makes. Without memory for a frame they are not deleted.
class Frame {
 public:
  explicit Frame(JNIEnv* env) noexcept : m_env(env), m_isThere(env->PushLocalFrame(32) == JNI_OK) {
    if (!m_isThere) env->ExceptionClear();
  }
  Frame(const Frame&) = delete;
  Frame& operator=(const Frame&) = delete;
  ~Frame() {
    if (m_isThere) m_env->PopLocalFrame(nullptr);
  }

 private:
  JNIEnv* m_env;
  bool m_isThere;
};

// A scope in which other threads see that the VM ends.
class Ending {
 public:
  Ending() noexcept { TheVm().isEnding = true; }
  Ending(const Ending&) = delete;
  Ending& operator=(const Ending&) = delete;
  ~Ending() { TheVm().isEnding = false; }
};

}  // namespace

bool IsCalledByJava(JNIEnv* env) noexcept {
  const Frame frame(env);
  const PendingAside pending(env);
  try {
    return JavaThreads(env).IsInJava();
  } catch (...) {
    return true;
  }
}

VmEnd EndNow(JavaVM* vm, JNIEnv* env, std::chrono::milliseconds grace) {
  if (OpenMemory::IsOpenInThisThread()) RefuseEnd(__LINE__, "while Elements are open in this thread");
  std::optional<Frame> frame(std::in_place, env);
  PendingAside pending(env);
  JavaThreads threads(env);
  if (threads.IsInJava()) RefuseEnd(__LINE__, "by a thread that Java has called");
  pending.Drop();
  EndCalls();
  const Ending ending;
  const bool isAlone = WaitForOthers(threads, grace);
  frame.reset();
  VmState& state = TheVm();
  state.end = isAlone ? VmEnd::Destroyed : VmEnd::LeftRunning;
  if (!isAlone) {
    RunShutdownHooks(env);
    return VmEnd::LeftRunning;
  }
  ForgetEnv();
  // Other threads may still leave the VM, and ask it, until it reports its death.
  if (!vmDeathIsSeen.load()) LeaveVm();
  // Detached first: the VM would take an attached thread for a daemon in native code, and wait for it.
  vm->DetachCurrentThread();
  vm->DestroyJavaVM();
  UseVm(nullptr);
  return VmEnd::Destroyed;
}

}  // namespace torvan::java::detail
