#include <torvan/java/detail/Shared.h>

#include <torvan/java/detail/Pending.h>

#include <memory>
#include <new>

namespace torvan::java::detail {

namespace {

std::atomic<SharedRef*> s_dropped{nullptr};

void Delete(JNIEnv* env, SharedRef* shared) noexcept {
  if (shared->isWeak) {
    env->DeleteWeakGlobalRef(static_cast<jweak>(shared->ref));
  } else {
    env->DeleteGlobalRef(shared->ref);
  }
  delete shared;
}

void DeleteLater(SharedRef* shared) noexcept {
  SharedRef* first = s_dropped.load(std::memory_order_relaxed);
  do {
    shared->next = first;
  } while (!s_dropped.compare_exchange_weak(first, shared, std::memory_order_release, std::memory_order_relaxed));
}

}  // namespace

SharedRef* MakeShared(JNIEnv* env, jobject ref, bool isWeak) {
  DeleteDropped(env);
  auto shared = std::unique_ptr<SharedRef>(new SharedRef{nullptr, isWeak, {1}, nullptr});
  shared->ref = isWeak ? env->NewWeakGlobalRef(ref) : env->NewGlobalRef(ref);
  if (shared->ref == nullptr) ThrowOutOfReferences(env);
  return shared.release();
}

void ThrowOutOfReferences(JNIEnv* env) {
  CheckPending(env);
  throw std::bad_alloc();
}

void DropShared(SharedRef* shared) noexcept {
  if (JNIEnv* env = EnvIfAttached()) {
    Delete(env, shared);
  } else if (HasVm()) {
    DeleteLater(shared);
  } else {
    delete shared;
  }
}

void DeleteDropped(JNIEnv* env) noexcept {
  if (s_dropped.load(std::memory_order_relaxed) == nullptr) return;
  SharedRef* shared = s_dropped.exchange(nullptr, std::memory_order_acquire);
  while (shared != nullptr) Delete(env, std::exchange(shared, shared->next));
}

}  // namespace torvan::java::detail
