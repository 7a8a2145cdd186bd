#include <torvan/java/detail/Environment.h>

#include <torvan/java/Failure.h>
#include <torvan/java/detail/Shared.h>

#include <cassert>
#include <chrono>
#include <string>
#include <thread>

#include "java/Bindings.h"
#include "java/JniStatus.h"
#include "java/Threads.h"

namespace torvan::java::detail {

std::atomic<JavaVM*> runningVm{nullptr};
std::atomic<JavaVM*> livingVm{nullptr};
std::atomic<bool> threadEndsAreSeen{false};
std::atomic<bool> vmDeathIsSeen{false};

namespace {

std::atomic<bool> s_hadVm{false};

thread_local bool t_isCritical = false;

// Whether the calling thread was begun with, in a VM that does not tell when a thread ends.
thread_local bool t_isBegun = false;

// The lowest bit of an attachment's number: the layer itself made it.
constexpr std::uintptr_t ByLayer = 1;

std::atomic<std::uintptr_t> s_lastAttachment{0};
std::atomic<int> s_entering{0};

std::atomic<int> s_openMemory{0};
thread_local int t_openMemory = 0;

void CountOpenMemory(int by) noexcept {
  t_openMemory += by;
  s_openMemory.fetch_add(by);
}

}  // namespace

Entering::Entering(const std::atomic<JavaVM*>& vm) noexcept {
  s_entering.fetch_add(1);
  m_vm = vm.load();
}
Entering::~Entering() { s_entering.fetch_sub(1); }

void UseVm(JavaVM* vm) noexcept {
  if (vm == nullptr) EndCalls();
  livingVm.store(vm);  // in one order with Entering
  if (vm == nullptr) return;
  runningVm.store(vm, std::memory_order_release);
}

void EndCalls() noexcept {
  threadEndsAreSeen.store(false, std::memory_order_relaxed);
  s_hadVm.store(true, std::memory_order_relaxed);  // true for a VM that was never joined, too
  runningVm.store(nullptr);                        // in one order with OpenMemory and Entering
}

// The memory is counted before the VM is asked for. So the end of the VM either sees that something is open, or has
// begun before, and then nothing is opened.
OpenMemory::OpenMemory() {
  CountOpenMemory(1);
  if (runningVm.load() != nullptr) return;
  CountOpenMemory(-1);
  ThrowNoVm();
}

OpenMemory::~OpenMemory() { CountOpenMemory(-1); }

JNIEnv* OpenMemory::Env() noexcept {
  if (JNIEnv* const env = EnvIfAttached()) return env;
  // The end of the VM may have begun, even during this call. While it waits, the memory can still be released.
  JavaVM* const vm = livingVm.load(std::memory_order_acquire);
  void* env = nullptr;
  if (vm == nullptr || vm->GetEnv(&env, JNI_VERSION_1_6) != JNI_OK) return nullptr;
  return static_cast<JNIEnv*>(env);
}

bool OpenMemory::IsOpen() noexcept { return s_openMemory.load() != 0; }
bool OpenMemory::IsOpenInThisThread() noexcept { return t_openMemory > 0; }

void ThrowNoVm() {
  const bool ended = s_hadVm.load(std::memory_order_relaxed);
  throw Misuse("java/Environment", __LINE__,
               ended ? "The Java VM has ended" : "No Java VM runs: call StartVm or JoinVm first");
}

// Clears the cached environment, so that the next call runs the checks below; other calls cost nothing more.
void EnterCritical() noexcept {
  t_isCritical = true;
  CacheEnv(nullptr);
}
void LeaveCritical() noexcept { t_isCritical = false; }

void RequireNotCritical() {
  if (t_isCritical) {
    throw Misuse("java/Environment", __LINE__, "Java is called while CriticalElements are open in this thread");
  }
}

JNIEnv* AskForEnv() noexcept {
  assert(!t_isCritical && "a reference is dropped while CriticalElements are open in this thread");
  const Entering entering(runningVm);
  JavaVM* const vm = entering.Vm();
  void* env = nullptr;
  if (vm == nullptr || vm->GetEnv(&env, JNI_VERSION_1_6) != JNI_OK) return nullptr;
  // A thread that other code has attached is detached at its end, too: the end of the VM would wait for one that has
  // ended attached. A thread of Java's own has left the VM by then.
  DetachAtThreadEnd(true);
  return static_cast<JNIEnv*>(env);
}

// Makes the thread's next calls find its environment, and sees that Java finds services on it. What only drops a
// reference does not come here, so that the first call after it does.
void Begin(JNIEnv* env, bool isByLayer, bool isSeen) noexcept {
  const bool isBegun = isSeen ? AttachmentNumber() != 0 : t_isBegun;
  if (isSeen) {
    RememberEnv(env, isByLayer);
  } else {
    t_isBegun = true;
  }
  if (isByLayer || !isBegun) SetContextClassLoader(env, isByLayer);
}

JNIEnv* AttachedEnv(const char* name, bool* attached) {
  RequireVm();
  RequireNotCritical();
  // Read before the thread is attached: the end of the VM may clear it meanwhile, but the VM reports the end of this
  // attachment even then.
  const bool isSeen = threadEndsAreSeen.load(std::memory_order_relaxed);
  if (JNIEnv* env = AskForEnv()) {
    Begin(env, false, isSeen);  // other code has attached the thread, or it is one of Java's
    return env;
  }

  const Entering entering(runningVm);
  JavaVM* const vm = entering.Vm();
  if (vm == nullptr) ThrowNoVm();
  std::string text(name != nullptr ? name : "");
  JavaVMAttachArgs arguments{JNI_VERSION_1_6, name != nullptr ? text.data() : nullptr, nullptr};
  void* made = nullptr;
  // Attached as a daemon: the end of the VM waits for every other thread, even for one that has ended without
  // detaching.
  const jint status = vm->AttachCurrentThreadAsDaemon(&made, &arguments);
  if (status != JNI_OK) {
    RequireVm();
    const std::string reason = WordsFor(status, "the thread");
    throw Failure("java/Environment", __LINE__, "The Java VM does not attach this thread: " + reason);
  }
  JNIEnv* const env = static_cast<JNIEnv*>(made);
  if (attached != nullptr) *attached = true;
  DetachAtThreadEnd(true);
  Begin(env, true, isSeen);
  DeleteDropped(env);
  return env;
}

void RememberEnv(JNIEnv* env, bool isByLayer) noexcept {
  constexpr std::uintptr_t step = 2 * ByLayer;
  if (AttachmentNumber() == 0) {
    const std::uintptr_t next = s_lastAttachment.fetch_add(step, std::memory_order_relaxed) + step;
    SetAttachmentNumber(isByLayer ? next | ByLayer : next);
  }
  CacheEnv(env);
}

bool IsAttachedByLayer() noexcept { return (AttachmentNumber() & ByLayer) != 0; }

void ForgetEnv() noexcept {
  CacheEnv(nullptr);
  SetAttachmentNumber(0);
  if (!threadEndsAreSeen.load(std::memory_order_relaxed)) t_isBegun = false;
}

// Waits for a second at most: attaching or detaching a thread runs Java code, which may wait for the calling thread.
void LeaveVm() noexcept {
  using namespace std::chrono_literals;
  UseVm(nullptr);
  const auto end = std::chrono::steady_clock::now() + 1s;  // a sleep may take much longer than it is asked to
  while (s_entering.load() != 0 && std::chrono::steady_clock::now() < end) std::this_thread::sleep_for(1ms);
}

void ThrowOtherThread() {
  throw Misuse("java/Environment", __LINE__,
               "This Thread belongs to another thread, or to one that was detached meanwhile");
}

// Also works while the VM is being ended. Where that waits for this thread, it then waits no longer.
void DetachThread() noexcept {
  const Entering entering(livingVm);
  JavaVM* const vm = entering.Vm();
  void* env = nullptr;
  if (vm != nullptr && vm->GetEnv(&env, JNI_VERSION_1_6) == JNI_OK) vm->DetachCurrentThread();
  ForgetEnv();
  DetachAtThreadEnd(false);
}

}  // namespace torvan::java::detail
