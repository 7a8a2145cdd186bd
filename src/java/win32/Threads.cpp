#include "java/Threads.h"

#include <windows.h>

namespace torvan::java::detail {

namespace {

// TlsGetValue, because thread_local is emulated by MinGW and costs several times as much.
const DWORD s_envIndex = TlsAlloc();
const DWORD s_numberIndex = TlsAlloc();

// The process is ending: other threads are gone, and with them whatever locks they held.
bool ProcessIsEnding() noexcept {
  using Question = BOOLEAN(NTAPI*)();
  static const auto question = reinterpret_cast<Question>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlDllShutdownInProgress")));
  return question != nullptr && question() != FALSE;
}

void NTAPI OnThreadEnd(void* attached) {
  if (attached != nullptr && !ProcessIsEnding()) DetachThread();
}

// A fiber-local slot and not a thread_local destructor: its callback runs before the loader lock is taken, which a
// thread that waits for a safepoint must not hold. It is never freed, since that would call back for living threads.
DWORD SlotOfAttachedThreads() {
  static const DWORD slot = FlsAlloc(&OnThreadEnd);
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
