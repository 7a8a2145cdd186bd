// What the layer knows about the VM of the process.
#pragma once

#include <torvan/java/Vm.h>

#include <atomic>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>

namespace torvan::java::detail {

struct VmState {
  std::recursive_mutex lock;  // one start or end at a time; shutdown hooks may come back here on the same thread
  // Whether the VM is being ended. A shutdown hook must not wait for the lock then, because the end waits for it.
  std::atomic<bool> isEnding{false};
  std::optional<jni::CJavaVm> handle;
  std::optional<VmEnd> end;
  std::filesystem::path
      refusing;  // the library whose VM has failed to be created after it had begun to read its options
};

// Never destroyed: the handle keeps the VM library loaded.
VmState& TheVm();

using VmLock = std::unique_lock<std::recursive_mutex>;

// Locks the state for a start, a join or an end. Waits for another thread that has it, unless `isRefused` says that the
// calling thread must not: then returns without the lock.
VmLock LockVm(const std::function<bool()>& isRefused);

// Whether the VM is being ended, so that it can be neither started nor joined.
bool IsEnding();

struct VmLibrary;

// Makes a running VM the layer's own. The calling thread is attached, with `env`. Throws StartFailure.
void TakeVm(JavaVM* vm, JNIEnv* env, const VmLibrary& library, jint jniVersion);

// Whether Java has called the calling thread, whose environment it is. True where Java cannot tell.
bool IsCalledByJava(JNIEnv* env) noexcept;

// Ends the VM that `env` belongs to and returns how.
VmEnd EndNow(JavaVM* vm, JNIEnv* env, std::chrono::milliseconds grace);

}  // namespace torvan::java::detail
