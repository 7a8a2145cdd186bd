// The functions that the VM calls: when it prints, when Java ends the process, and when the VM aborts it.
#pragma once

#include <torvan/jni/JniTypes.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace torvan::java::detail {

// The host's own functions, each possibly empty.
struct HostHooks {
  std::function<void(jint)> onExit;
  std::function<void()> onAbort;
  std::function<void(std::string_view)> onOutput;
};

// Takes the host's functions and begins to keep what the VM prints; returns the options that name the hooks. They come
// first, so that what the VM says about the others is seen.
std::vector<JavaVMOption> BeginStart(HostHooks hooks);

// Stops keeping it. After a success the kept text is printed; after a failure it is returned, and the host's functions
// are dropped.
void PrintKept();
std::string TakeKept();

}  // namespace torvan::java::detail
