#include "Tools.h"

#include <jvmti.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "Environment.h"

namespace hotspot {

// Laid out as jvmtiEnv is. Kept by HotSpot with the environment that it is for.
struct HostTools {
  const void* const* functions;
  jvmtiEnv* real;
  jvmtiEventCallbacks callbacks;
};

namespace {

// HotSpot calls it for an event, and it calls the host's function.
template <auto Member>
struct Event;
template <typename... Parameters, void (*jvmtiEventCallbacks::*Member)(jvmtiEnv*, JNIEnv*, Parameters...)>
struct Event<Member> {
  static void Call(jvmtiEnv* real, JNIEnv* env, Parameters... parameters) {
    void* kept = nullptr;
    if (real->GetEnvironmentLocalStorage(&kept) != JVMTI_ERROR_NONE || kept == nullptr) return;
    auto* const tools = static_cast<HostTools*>(kept);
    using Function = void(WINDOWS_ABI*)(HostTools*, HostEnv*, Parameters...);
    const auto function = reinterpret_cast<Function>(tools->callbacks.*Member);
    if (function != nullptr) function(tools, HostEnvOf(env), parameters...);
  }
};

OUT_OF_LINE jvmtiError SetCallbacks(HostTools& tools, const jvmtiEventCallbacks* host, jint size) {
  jvmtiEventCallbacks wanted{};
  if (host != nullptr) std::memcpy(&wanted, host, std::min(static_cast<std::size_t>(size), sizeof(wanted)));
  jvmtiEventCallbacks others = wanted;
  others.ThreadEnd = nullptr;
  others.VMDeath = nullptr;
  static constexpr jvmtiEventCallbacks none{};
  if (std::memcmp(&others, &none, sizeof(none)) != 0) return JVMTI_ERROR_NOT_AVAILABLE;
  tools.callbacks = wanted;
  jvmtiEventCallbacks bridged{};
  bridged.ThreadEnd = &Event<&jvmtiEventCallbacks::ThreadEnd>::Call;
  bridged.VMDeath = &Event<&jvmtiEventCallbacks::VMDeath>::Call;
  return tools.real->SetEventCallbacks(&bridged, sizeof(bridged));
}

WINDOWS_ABI jvmtiError SetEventCallbacks(HostTools* tools, const jvmtiEventCallbacks* callbacks, jint size) {
  return SetCallbacks(*tools, callbacks, size);
}

WINDOWS_ABI jvmtiError SetEventNotificationMode(HostTools* tools, jvmtiEventMode mode, jvmtiEvent event, jthread thread,
                                                ...) {
  return tools->real->SetEventNotificationMode(mode, event, thread);
}

WINDOWS_ABI jvmtiError Allocate(HostTools* tools, jlong size, unsigned char** block) {
  return tools->real->Allocate(size, block);
}

WINDOWS_ABI jvmtiError Deallocate(HostTools* tools, unsigned char* block) { return tools->real->Deallocate(block); }

WINDOWS_ABI jvmtiError GetJniFunctionTable(HostTools* tools, const void*** table) {
  unsigned char* block = nullptr;
  const jvmtiError result = tools->real->Allocate(sizeof(EnvFunctions), &block);
  if (result != JVMTI_ERROR_NONE) return result;
  std::memcpy(block, HostFunctions().data(), sizeof(EnvFunctions));
  *table = reinterpret_cast<const void**>(block);
  return JVMTI_ERROR_NONE;
}

// Other threads call through the table meanwhile.
WINDOWS_ABI jvmtiError SetJniFunctionTable(HostTools*, const void* const* table) {
  for (const void*& function : HostFunctions()) __atomic_store_n(&function, *table++, __ATOMIC_RELAXED);
  return JVMTI_ERROR_NONE;
}

WINDOWS_ABI jvmtiError DisposeEnvironment(HostTools* tools) {
  const std::unique_ptr<HostTools> owner(tools);
  tools->real->SetEnvironmentLocalStorage(nullptr);
  return tools->real->DisposeEnvironment();
}

WINDOWS_ABI jvmtiError IsNotAvailable(HostTools*) { return JVMTI_ERROR_NOT_AVAILABLE; }

using ToolsFunctions = std::array<const void*, sizeof(jvmtiInterface_1_) / sizeof(void*)>;
ToolsFunctions MakeToolsFunctions() {
  ToolsFunctions table{};
  table.fill(reinterpret_cast<const void*>(&IsNotAvailable));
  const auto set = [&table](std::size_t offset, auto* function) {
    table[offset / sizeof(void*)] = reinterpret_cast<const void*>(function);
  };
  set(offsetof(jvmtiInterface_1_, Allocate), &Allocate);
  set(offsetof(jvmtiInterface_1_, Deallocate), &Deallocate);
  set(offsetof(jvmtiInterface_1_, DisposeEnvironment), &DisposeEnvironment);
  set(offsetof(jvmtiInterface_1_, GetJNIFunctionTable), &GetJniFunctionTable);
  set(offsetof(jvmtiInterface_1_, SetJNIFunctionTable), &SetJniFunctionTable);
  set(offsetof(jvmtiInterface_1_, SetEventCallbacks), &SetEventCallbacks);
  set(offsetof(jvmtiInterface_1_, SetEventNotificationMode), &SetEventNotificationMode);
  return table;
}

}  // namespace

OUT_OF_LINE jint GetTools(JavaVM* vm, HostTools** tools, jint version) {
  static const ToolsFunctions functions = MakeToolsFunctions();
  *tools = nullptr;
  void* real = nullptr;
  const jint result = vm->functions->GetEnv(vm, &real, version);
  if (result != JNI_OK) return result;
  auto made = std::make_unique<HostTools>(HostTools{functions.data(), static_cast<jvmtiEnv*>(real), {}});
  if (made->real->SetEnvironmentLocalStorage(made.get()) != JVMTI_ERROR_NONE) {
    made->real->DisposeEnvironment();
    return JNI_ERR;
  }
  *tools = made.release();
  return JNI_OK;
}

}  // namespace hotspot
