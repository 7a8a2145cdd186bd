#include <torvan/java/Vm.h>

#include <torvan/Initialize.h>
#include <torvan/java/Failure.h>
#include <torvan/java/detail/Environment.h>
#include <torvan/java/detail/Text.h>
#include <torvan/jni/DynamicJavaRuntime.h>

#include <string>
#include <utility>

#include "java/Bindings.h"
#include "java/PathText.h"
#include "java/Threads.h"
#include "java/VmLibrary.h"
#include "java/VmState.h"

namespace torvan::java {

using detail::TheVm;
using detail::VmLibrary;

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

// Makes a running VM the layer's own; the calling thread is attached.
void detail::TakeVm(JavaVM* vm, JNIEnv* env, const VmLibrary& library, jint jniVersion) {
  KeepLoaded();
  Bind(env);
  TheVm().handle.emplace(HandleOf(library, jniVersion));
  WatchVm(vm);
  UseVm(vm);
}

Vm JoinVm() {
  JavaVM* const vm = VmOf(detail::LoadedVmLibrary());
  if (vm == nullptr) throw StartFailure("java/Vm", __LINE__, "No Java VM runs in this process");
  return JoinVm(vm);
}

Vm JoinVm(const jni::CJavaVm& vm) {
  JavaVM* raw = nullptr;
  vm.Attach()->GetJavaVM(&raw);
  return JoinVm(raw);
}

Vm JoinVm(JavaVM* vm) {
  const std::lock_guard<std::recursive_mutex> guard(TheVm().lock);
  if (TheVm().end.has_value()) detail::ThrowNoVm();
  if (detail::runningVm.load(std::memory_order_acquire) == vm && vm != nullptr) return Vm(false);
  void* env = nullptr;
  const bool wasAttached = vm != nullptr && vm->GetEnv(&env, JNI_VERSION_1_6) == JNI_OK;
  if (!wasAttached && (vm == nullptr || vm->AttachCurrentThreadAsDaemon(&env, nullptr) != JNI_OK)) {
    throw StartFailure("java/Vm", __LINE__, "The Java VM does not attach this thread");
  }
  detail::TakeVm(vm, static_cast<JNIEnv*>(env), detail::LoadedVmLibrary(), JNI_VERSION_1_6);
  if (!wasAttached) {
    // Once more, as every thread that calls is attached.
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
    // Called by Java: this VM goes on, as one that is released.
  }
}

const jni::CJavaVm& Vm::Handle() const noexcept { return *TheVm().handle; }

void Vm::Release() noexcept { m_owns = false; }

VmEnd Vm::End(std::chrono::milliseconds grace) {
  const std::lock_guard<std::recursive_mutex> guard(TheVm().lock);
  if (TheVm().end.has_value()) return *TheVm().end;
  if (!m_owns) {
    throw Misuse("java/Vm", __LINE__, "This Vm does not own the Java VM: it was joined, released or moved");
  }
  // Java has ended it itself, by System.exit.
  if (!detail::HasVm()) return VmEnd::Destroyed;
  JNIEnv* const env = detail::Env();
  return detail::EndNow(detail::runningVm.load(std::memory_order_acquire), env, grace);
}

VmEnd EndVm(const jni::CJavaVm& vm, std::chrono::milliseconds grace) {
  const std::lock_guard<std::recursive_mutex> guard(TheVm().lock);
  if (TheVm().end.has_value()) return *TheVm().end;
  JNIEnv* const env = vm.Attach();
  JavaVM* raw = nullptr;
  env->GetJavaVM(&raw);
  return detail::EndNow(raw, env, grace);
}

}  // namespace torvan::java
