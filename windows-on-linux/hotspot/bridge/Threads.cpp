#include "Threads.h"

#include <dlfcn.h>
#include <semaphore.h>
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <memory>
#include <utility>

#include "Windows.h"

namespace hotspot {

namespace {

__thread bool t_isWindowsThread;
__thread std::size_t t_askedStackSize;

struct Task {
  void* (*function)(void*);
  void* argument;
  std::size_t stackSize;
};

// A thread of Windows that has begun, and waits for its task. The thread itself frees this.
struct BegunThread {
  explicit BegunThread(std::size_t size) : stackSize(size) {
    sem_init(&hasBegun, 0, 0);
    sem_init(&hasTask, 0, 0);
  }
  ~BegunThread() {
    sem_destroy(&hasBegun);
    sem_destroy(&hasTask);
  }
  BegunThread(const BegunThread&) = delete;
  BegunThread& operator=(const BegunThread&) = delete;

  const std::size_t stackSize;
  pthread_t thread{};
  Task task{};
  sem_t hasBegun;
  sem_t hasTask;
};

// The one for the thread of Java's that the calling thread starts.
__thread BegunThread* t_begun;

void Wait(sem_t& semaphore) {
  while (sem_wait(&semaphore) != 0) continue;
}

OUT_OF_LINE void Run(BegunThread* own) {
  EnterFromWindows();
  // By this signal Wine takes threads away when the process exits, wherever they are. They may hold locks of the C
  // library then, which the end of the process needs.
  sigset_t ending;
  sigemptyset(&ending);
  sigaddset(&ending, SIGQUIT);
  pthread_sigmask(SIG_BLOCK, &ending, nullptr);
  own->thread = pthread_self();
  sem_post(&own->hasBegun);
  Wait(own->hasTask);
  const Task task = own->task;
  delete own;
  t_askedStackSize = task.stackSize;
  if (task.function != nullptr) task.function(task.argument);
}

WINDOWS_ABI std::uint32_t HotSpotThread(void* begun) {
  Run(static_cast<BegunThread*>(begun));
  return 0;
}

// Null if the system makes no further thread.
BegunThread* Begin(std::size_t stackSize) {
  auto begun = std::make_unique<BegunThread>(stackSize);
  constexpr std::uint32_t sizeIsReserved = 0x10000;
  std::uint32_t id = 0;
  void* const handle =
      CreateThread(nullptr, stackSize + GuardedByWine, &HotSpotThread, begun.get(), sizeIsReserved, &id);
  if (handle == nullptr) return nullptr;
  CloseHandle(handle);
  Wait(begun->hasBegun);
  return begun.release();
}

// It runs the task and ends; a task without a function is nothing to do.
void Assign(BegunThread* begun, const Task& task) {
  begun->task = task;
  sem_post(&begun->hasTask);
}

// Where java.lang.Thread keeps the size of stack that its constructor got.
struct StackSizeField {
  jfieldID holder;  // of the object that has the size; null if the thread itself has it
  jfieldID size;
};

jfieldID FindField(JNIEnv* env, const char* type, const char* name, const char* descriptor) {
  jclass owner = env->FindClass(type);
  jfieldID field = owner != nullptr ? env->GetFieldID(owner, name, descriptor) : nullptr;
  if (field == nullptr) env->FatalError("jvm.dll: this version of Java keeps the size of a thread's stack elsewhere");
  return field;
}

StackSizeField FindStackSizeField(JNIEnv* env) {
  constexpr jint java19 = 0x00130000;
  const char* const thread = "java/lang/Thread";
  if (env->GetVersion() < java19) return {nullptr, FindField(env, thread, "stackSize", "J")};
  return {FindField(env, thread, "holder", "Ljava/lang/Thread$FieldHolder;"),
          FindField(env, "java/lang/Thread$FieldHolder", "stackSize", "J")};
}

// 0 for a thread that has the VM's usual one.
std::size_t StackSizeOf(JNIEnv* env, jobject thread) {
  static const StackSizeField field = FindStackSizeField(env);
  jobject const owner = field.holder != nullptr ? env->GetObjectField(thread, field.holder) : thread;
  const jlong size = env->GetLongField(owner, field.size);
  return size > 0 ? static_cast<std::size_t>(size) : 0;
}

// What HotSpot has asked for so far, at most: enough for a thread of Java's with the usual stack.
std::atomic<std::size_t> s_largestStack;

}  // namespace

OUT_OF_LINE void EnterFromWindows() { t_isWindowsThread = true; }

OUT_OF_LINE bool IsWindowsThread() { return t_isWindowsThread; }

OUT_OF_LINE std::size_t AskedStackSize() { return t_askedStackSize; }

int CreateHotSpotThread(pthread_t* thread, const pthread_attr_t* attributes, void* (*function)(void*), void* argument) {
  if (!IsWindowsThread()) return pthread_create(thread, attributes, function, argument);
  std::size_t stackSize = 0;
  pthread_attr_getstacksize(attributes, &stackSize);
  std::size_t largest = s_largestStack;
  while (largest < stackSize && !s_largestStack.compare_exchange_weak(largest, stackSize)) continue;
  const bool isLargeEnough = t_begun != nullptr && t_begun->stackSize >= stackSize;
  BegunThread* const begun = isLargeEnough ? std::exchange(t_begun, nullptr) : Begin(stackSize);
  if (begun == nullptr) return EAGAIN;
  *thread = begun->thread;
  Assign(begun, {function, argument, stackSize});
  return 0;
}

void StartJavaThread(JNIEnv* env, jobject thread) {
  static const auto start = reinterpret_cast<void (*)(JNIEnv*, jobject)>(dlsym(RTLD_DEFAULT, "JVM_StartThread"));
  constexpr std::size_t addedByHotSpot = 0x10000;  // at most, to a size that Java code has chosen
  if (IsWindowsThread()) {
    t_begun = Begin(std::max<std::size_t>(s_largestStack, StackSizeOf(env, thread) + addedByHotSpot));
  }
  start(env, thread);
  if (t_begun != nullptr) Assign(std::exchange(t_begun, nullptr), {});  // too small, or the VM has refused the start
}

}  // namespace hotspot
