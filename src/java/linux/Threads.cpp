#include "java/Threads.h"

#include <dlfcn.h>
#include <pthread.h>

namespace torvan::java::detail {

__thread std::uintptr_t t_attachmentNumber = 0;

namespace {

thread_local JNIEnv* t_env = nullptr;

// A key and not a destructor of a thread_local object: those run first and may still drop references, and a thread that
// is attached again by another key's destructor is detached in the next round.
pthread_key_t KeyOfAttachedThreads() {
  static const pthread_key_t key = [] {
    pthread_key_t made{};
    pthread_key_create(&made, [](void*) { DetachThread(); });
    return made;
  }();
  return key;
}

}  // namespace

JNIEnv* Env() {
  if (JNIEnv* env = t_env; env != nullptr && HasVm()) return env;
  return AttachedEnv(nullptr);
}

JNIEnv* EnvIfAttached() noexcept {
  if (!HasVm()) return nullptr;
  if (JNIEnv* env = t_env; env != nullptr) return env;
  return AskForEnv();
}

void CacheEnv(JNIEnv* env) noexcept { t_env = env; }
void SetAttachmentNumber(std::uintptr_t number) noexcept { t_attachmentNumber = number; }

void DetachAtThreadEnd(bool detaches) noexcept {
  const pthread_key_t key = KeyOfAttachedThreads();
  const void* const wanted = detaches ? &t_env : nullptr;
  if (pthread_getspecific(key) != wanted) pthread_setspecific(key, wanted);
}

void KeepLoaded() noexcept {
  Dl_info info{};
  if (dladdr(reinterpret_cast<void*>(&KeepLoaded), &info) != 0) {
    dlopen(info.dli_fname, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE);
  }
}

}  // namespace torvan::java::detail
