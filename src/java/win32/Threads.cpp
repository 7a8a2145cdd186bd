#include "java/Threads.h"

#include <windows.h>

#include <atomic>

namespace torvan::java::detail {

namespace {

// A value of each thread, null at first. By TlsGetValue, because thread_local is emulated by MinGW and costs several
// times as much. Its index is taken at the first Set, because static objects of a host may start the VM before those of
// this file are made; TlsGetValue returns null for the index that there is until then.
class ThreadValue {
 public:
  void* Get() const noexcept { return TlsGetValue(m_index.load(std::memory_order_acquire)); }
  void Set(void* value) noexcept { TlsSetValue(Index(), value); }

 private:
  DWORD Index() noexcept {
    DWORD index = m_index.load(std::memory_order_acquire);
    if (index != TLS_OUT_OF_INDEXES) return index;
    const DWORD made = TlsAlloc();
    if (m_index.compare_exchange_strong(index, made, std::memory_order_acq_rel)) return made;
    TlsFree(made);  // another thread was first
    return index;
  }

  std::atomic<DWORD> m_index{TLS_OUT_OF_INDEXES};
};

ThreadValue s_env;
ThreadValue s_number;

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

JNIEnv* RememberedEnv() noexcept { return static_cast<JNIEnv*>(s_env.Get()); }

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

std::uintptr_t AttachmentNumber() noexcept { return reinterpret_cast<std::uintptr_t>(s_number.Get()); }

void CacheEnv(JNIEnv* env) noexcept { s_env.Set(env); }
void SetAttachmentNumber(std::uintptr_t number) noexcept { s_number.Set(reinterpret_cast<void*>(number)); }

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
