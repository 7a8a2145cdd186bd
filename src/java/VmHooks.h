// The functions that the VM calls: when it prints, when Java ends the process, and when the VM aborts it.
#pragma once

#include <torvan/jni/JniTypes.h>

#include <cstddef>
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

inline constexpr std::size_t HookCount = 3;

// Takes the host's functions and begins to keep what the VM prints; adds the options that name the hooks, for which
// there is room. They come first, so that what the VM says about the others is seen.
void BeginStart(HostHooks hooks, std::vector<JavaVMOption>& options) noexcept;

// Stops keeping it. After a success the kept text is printed; after a failure it is returned, and the host's functions
// are dropped.
void PrintKept();
std::string TakeKept();

}  // namespace torvan::java::detail
