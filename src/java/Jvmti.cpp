#include <torvan/java/detail/Environment.h>

#include <jvmti.h>

#include "java/Threads.h"

namespace torvan::java::detail {

namespace {

void JNICALL OnThreadEnd(jvmtiEnv*, JNIEnv*, jthread) { ForgetEnv(); }

// Also called when Java itself ends the VM. References that the host drops later do nothing.
void JNICALL OnVmDeath(jvmtiEnv*, JNIEnv*) { LeaveVm(); }

}  // namespace

void WatchVm(JavaVM* vm) noexcept {
  jvmtiEnv* tools = nullptr;
  if (vm->GetEnv(reinterpret_cast<void**>(&tools), JVMTI_VERSION_1_2) != JNI_OK) return;
  jvmtiEventCallbacks callbacks{};
  callbacks.ThreadEnd = &OnThreadEnd;
  callbacks.VMDeath = &OnVmDeath;
  const bool watches =
      tools->SetEventCallbacks(&callbacks, sizeof callbacks) == JVMTI_ERROR_NONE &&
      tools->SetEventNotificationMode(JVMTI_ENABLE, JVMTI_EVENT_VM_DEATH, nullptr) == JVMTI_ERROR_NONE &&
      tools->SetEventNotificationMode(JVMTI_ENABLE, JVMTI_EVENT_THREAD_END, nullptr) == JVMTI_ERROR_NONE;
  threadEndsAreSeen.store(watches, std::memory_order_relaxed);
  vmDeathIsSeen.store(watches);
}

}  // namespace torvan::java::detail
