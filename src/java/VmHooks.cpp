#include "java/VmHooks.h"

#include <torvan/java/detail/Environment.h>

#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <utility>

namespace torvan::java::detail {

namespace {

// Never destroyed: the VM calls as long as the process runs.
struct Hooks {
  HostHooks host;
  std::mutex lock;
  bool isStarting = false;
  std::string kept;
};

Hooks& TheHooks() {
  static Hooks* const hooks = new Hooks;
  return *hooks;
}

// A host's function must not throw into the VM.
template <typename Function, typename... Arguments>
void Call(const Function& function, Arguments... arguments) noexcept {
  if (function) function(arguments...);
}

void Print(FILE* stream, std::string_view text) {
  const Hooks& hooks = TheHooks();
  if (hooks.host.onOutput) {
    Call(hooks.host.onOutput, text);
  } else {
    std::fwrite(text.data(), 1, text.size(), stream);
  }
}

jint PrintOrKeep(FILE* stream, const char* format, va_list arguments) {
  va_list copy;
  va_copy(copy, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, copy);
  va_end(copy);
  if (length <= 0) return length;
  std::string text(static_cast<std::size_t>(length) + 1, '\0');
  std::vsnprintf(text.data(), text.size(), format, arguments);
  text.pop_back();
  {
    Hooks& hooks = TheHooks();
    const std::lock_guard<std::mutex> guard(hooks.lock);
    if (hooks.isStarting) {
      hooks.kept += text;
      return length;
    }
  }
  Print(stream, text);
  return length;
}

jint JNICALL OnPrint(FILE* stream, const char* format, va_list arguments) {
  va_list copy;
  va_copy(copy, arguments);
  jint length = 0;
  try {
    length = PrintOrKeep(stream, format, arguments);
  } catch (...) {  // no memory: must not throw through the VM, whose words are needed most then
    length = std::vfprintf(stream, format, copy);
  }
  va_end(copy);
  return length;
}

void JNICALL OnExit(jint code) {
  // Static objects of the host are destroyed next, on a thread of the VM.
  UseVm(nullptr);
  Call(TheHooks().host.onExit, code);
}

// A VM that fails while it is created ends the process with 1 and calls this hook alone.
void JNICALL OnAbort() {
  UseVm(nullptr);
  Hooks& hooks = TheHooks();
  const bool wasStarting = hooks.isStarting;
  PrintKept();
  if (wasStarting) {
    Call(hooks.host.onExit, jint{1});
  } else {
    Call(hooks.host.onAbort);
  }
}

std::string EndKeeping() {
  Hooks& hooks = TheHooks();
  const std::lock_guard<std::mutex> guard(hooks.lock);
  hooks.isStarting = false;
  return std::exchange(hooks.kept, {});
}

template <typename Function>
JavaVMOption HookOption(const char* name, Function function) {
  return {const_cast<char*>(name), reinterpret_cast<void*>(function)};
}

}  // namespace

void BeginStart(HostHooks host, std::vector<JavaVMOption>& options) noexcept {
  Hooks& hooks = TheHooks();
  const std::lock_guard<std::mutex> guard(hooks.lock);
  hooks.host = std::move(host);
  hooks.isStarting = true;
  hooks.kept.clear();
  options.push_back(HookOption("vfprintf", &OnPrint));
  options.push_back(HookOption("exit", &OnExit));
  options.push_back(HookOption("abort", &OnAbort));
}

void PrintKept() {
  const std::string kept = EndKeeping();
  if (!kept.empty()) Print(stderr, kept);
}

std::string TakeKept() {
  std::string kept = EndKeeping();
  TheHooks().host = {};
  return kept;
}

}  // namespace torvan::java::detail
