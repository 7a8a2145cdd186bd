#include "java/Threads.h"

#include <windows.h>

namespace torvan::java::detail {

namespace {

// TlsGetValue, because thread_local is emulated by MinGW and costs several times as much.
const DWORD s_envIndex = TlsAlloc();
const DWORD s_numberIndex = TlsAlloc();

// Whether the process is ending: then other threads are gone, and their locks stay locked. Looking the function up
// takes the loader lock, which a starting thread may hold while it waits for the list of fiber-local data that
// OnThreadEnd has locked. So it is looked up before a thread can end.
BOOLEAN(NTAPI* s_isEnding)() = nullptr;

void NTAPI OnThreadEnd(void* attached) {
  if (attached != nullptr && s_isEnding() == FALSE) DetachThread();
}

// A fiber-local slot and not a thread_local destructor: its callback runs before the loader lock is taken, which a
// thread that waits for a safepoint must not hold. It is never freed, since that would call back for living threads.
DWORD SlotOfAttachedThreads() {
  static const DWORD slot = [] {
    s_isEnding = reinterpret_cast<BOOLEAN(NTAPI*)()>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlDllShutdownInProgress")));
    return FlsAlloc(&OnThreadEnd);
  }();
  return slot;
}

JNIEnv* RememberedEnv() noexcept { return static_cast<JNIEnv*>(TlsGetValue(s_envIndex)); }

}  // namespace

JNIEnv* Env() {
  if (JNIEnv* env = RememberedEnv(); env != nullptr && HasVm()) return env;
  return AttachedEnv(nullptr);
}

JNIEnv* EnvIfAttached() noexcept {
  if (!HasVm()) return nullptr;
  if (JNIEnv* env = RememberedEnv(); env != nullptr) return env;
  return AskForEnv();
}

std::uintptr_t AttachmentNumber() noexcept { return reinterpret_cast<std::uintptr_t>(TlsGetValue(s_numberIndex)); }

void CacheEnv(JNIEnv* env) noexcept { TlsSetValue(s_envIndex, env); }
void SetAttachmentNumber(std::uintptr_t number) noexcept {
  TlsSetValue(s_numberIndex, reinterpret_cast<void*>(number));
}

void DetachAtThreadEnd(bool detaches) noexcept {
  const DWORD slot = SlotOfAttachedThreads();
  void* const wanted = detaches ? reinterpret_cast<void*>(1) : nullptr;
  if (FlsGetValue(slot) != wanted) FlsSetValue(slot, wanted);
}

void KeepLoaded() noexcept {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                     reinterpret_cast<LPCWSTR>(&KeepLoaded), &module);
}

}  // namespace torvan::java::detail
