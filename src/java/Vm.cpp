#include <torvan/java/Vm.h>

#include <torvan/Initialize.h>
#include <torvan/java/Failure.h>
#include <torvan/java/detail/Environment.h>
#include <torvan/java/detail/StringText.h>
#include <torvan/jni/DynamicJavaRuntime.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include "java/Bindings.h"
#include "java/JniStatus.h"
#include "java/PathText.h"
#include "java/PendingAside.h"
#include "java/Threads.h"
#include "java/VmLibrary.h"
#include "java/VmState.h"

namespace torvan::java {

using detail::TheVm;
using detail::VmLibrary;
using detail::VmLock;
using detail::WordsFor;

namespace {

// A handle of the VM that runs, by way of the runtime library that created it.
jni::CJavaVm HandleOf(const VmLibrary& library, jint jniVersion) {
  torvan::Initialize();
  const std::u16string units = detail::ToUtf16(detail::ToText(library.path));
  const std::basic_string<RX::UniChar> path(units.begin(), units.end());
  const jni::CDynamicJavaRuntime runtime(path.c_str(), jniVersion);
  mirel::util::CVector<jni::CJavaVm> vms(1, 1);
  runtime.GetCreatedJavaVms(vms);
  return vms[0];
}

// Whether the end of the VM may wait for the calling thread: one that has Elements open, one that is attached, but not
// by the layer, such as a shutdown hook, or one that Java has called, which may hold a lock that a hook waits for.
bool IsWaitedFor() {
  if (detail::OpenMemory::IsOpenInThisThread()) return true;
  const detail::Entering entering(detail::livingVm);
  JavaVM* const vm = entering.Vm();
  // After a reported death no Java code runs any more; without a report it is unknown how far the end has come.
  if (vm == nullptr) return !detail::vmDeathIsSeen.load();
  void* env = nullptr;
  if (vm->GetEnv(&env, JNI_VERSION_1_6) != JNI_OK) return false;
  return !detail::IsAttachedByLayer() || detail::IsCalledByJava(static_cast<JNIEnv*>(env));
}

VmLock Lock(const std::function<bool()>& isRefused) {
  VmLock lock = detail::LockVm(isRefused);
  if (!lock) detail::ThrowNoVm();
  return lock;
}

// Asks once, when the end of the VM has begun, because the answer stays the same while the thread waits.
VmLock LockToEnd() {
  std::optional<bool> isWaitedFor;
  return Lock([&isWaitedFor] {
    if (!detail::IsEnding()) return false;
    if (!isWaitedFor) isWaitedFor = IsWaitedFor();
    return *isWaitedFor;
  });
}

JavaVM* VmOf(JNIEnv* env) {
  const detail::PendingAside pending(env);
  JavaVM* vm = nullptr;
  env->GetJavaVM(&vm);
  return vm;
}

JavaVM* VmOf(const VmLibrary& library) {
  JavaVM* vm = nullptr;
  jsize count = 0;
  if (library.list == nullptr || library.list(&vm, 1, &count) != JNI_OK || count < 1) return nullptr;
  return vm;
}

}  // namespace

detail::VmState& detail::TheVm() {
  static VmState* const state = new VmState;
  return *state;
}

bool detail::IsEnding() { return TheVm().isEnding.load(); }

// Asks again each time, because a thread may be here before the one that has the lock begins to end the VM.
VmLock detail::LockVm(const std::function<bool()>& isRefused) {
  constexpr std::chrono::milliseconds step{1};
  VmLock lock(TheVm().lock, std::defer_lock);
  while (!isRefused() && !lock.try_lock()) std::this_thread::sleep_for(step);
  return lock;
}

// Makes a running VM the layer's own; the calling thread is attached.
void detail::TakeVm(JavaVM* vm, JNIEnv* env, const VmLibrary& library, jint jniVersion) {
  KeepLoaded();
  Bind(env);
  TheVm().handle.emplace(HandleOf(library, jniVersion));
  WatchVm(vm);
  UseVm(vm);
}

Vm JoinVm() {
  const VmLock lock = Lock(&detail::IsEnding);
  JavaVM* const vm = VmOf(detail::LoadedVmLibrary());
  if (vm == nullptr) throw StartFailure("java/Vm", __LINE__, "No Java VM runs in this process");
  return JoinVm(vm);
}

Vm JoinVm(const jni::CJavaVm& vm) {
  const VmLock lock = Lock(&detail::IsEnding);
  if (TheVm().end.has_value()) detail::ThrowNoVm();
  return JoinVm(VmOf(vm.Attach()));
}

Vm JoinVm(JavaVM* vm) {
  if (vm == nullptr) throw StartFailure("java/Vm", __LINE__, "null is passed as the Java VM to join");
  const VmLock lock = Lock(&detail::IsEnding);
  if (TheVm().end.has_value()) detail::ThrowNoVm();
  if (detail::runningVm.load(std::memory_order_acquire) == vm) return Vm(false);
  void* env = nullptr;
  const bool wasAttached = vm->GetEnv(&env, JNI_VERSION_1_6) == JNI_OK;
  if (!wasAttached) {
    const jint status = vm->AttachCurrentThreadAsDaemon(&env, nullptr);
    if (status != JNI_OK) {
      throw StartFailure("java/Vm", __LINE__,
                         "The Java VM does not attach this thread: " + WordsFor(status, "the thread"));
    }
  }
  try {
    detail::TakeVm(vm, static_cast<JNIEnv*>(env), detail::LoadedVmLibrary(), JNI_VERSION_1_6);
  } catch (...) {
    if (!wasAttached) vm->DetachCurrentThread();
    throw;
  }
  if (!wasAttached) {
    // Attached again as a daemon, like every thread that calls.
    vm->DetachCurrentThread();
    detail::Env();
  }
  return Vm(false);
}

Vm::Vm(Vm&& other) noexcept : m_owns(std::exchange(other.m_owns, false)) {}

Vm& Vm::operator=(Vm&& other) noexcept {
  Vm taken(std::move(other));
  std::swap(m_owns, taken.m_owns);
  return *this;
}

Vm::~Vm() {
  // Where Java ends the process itself this may be a thread of the VM, which must not wait for anything.
  if (!m_owns || !detail::HasVm()) return;
  try {
    End();
  } catch (...) {
    // Java has called this thread, so the VM runs on as after Release().
  }
}

const jni::CJavaVm& Vm::Handle() const noexcept { return *TheVm().handle; }

void Vm::Release() noexcept { m_owns = false; }

VmEnd Vm::End(std::chrono::milliseconds grace) {
  const VmLock lock = LockToEnd();
  if (TheVm().end.has_value()) return *TheVm().end;
  if (!m_owns) throw Misuse("java/Vm", __LINE__, "This Vm does not own the Java VM: it was joined, released or moved");
  // Java has ended it itself, by System.exit.
  if (!detail::HasVm()) return VmEnd::Destroyed;
  JNIEnv* const env = detail::Env();
  return detail::EndNow(detail::runningVm.load(std::memory_order_acquire), env, grace);
}

VmEnd EndVm(const jni::CJavaVm& vm, std::chrono::milliseconds grace) {
  const VmLock lock = LockToEnd();
  if (TheVm().end.has_value()) return *TheVm().end;
  JNIEnv* const env = vm.Attach();
  JavaVM* const raw = VmOf(env);
  if (detail::livingVm.load() != raw) {  // it was never joined
    detail::KeepLoaded();
    detail::Bind(env);  // for what Java throws meanwhile
    detail::WatchVm(raw);
    detail::livingVm.store(raw);
  }
  return detail::EndNow(raw, env, grace);
}

}  // namespace torvan::java
