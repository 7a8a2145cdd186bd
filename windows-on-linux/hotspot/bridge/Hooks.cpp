#include "Hooks.h"

#include <chrono>
#include <condition_variable>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>

#include "Threads.h"
#include "Windows.h"

namespace hotspot {

namespace {

void(WINDOWS_ABI* s_hostAbort)();
void(WINDOWS_ABI* s_hostExit)(jint code);
jint(WINDOWS_ABI* s_hostVfprintf)(void* stream, const char* format, void* arguments);

template <typename Value>
Value ReadAt(const char* address) {
  Value value;
  std::memcpy(&value, address, sizeof(value));
  return value;
}

// The C runtime that the host's program imports, which a Windows VM shares with it.
void* HostRuntime() {
  const auto* program = static_cast<const char*>(GetModuleHandleA(nullptr));
  const char* const header = program + ReadAt<std::uint32_t>(program + 0x3C);
  const auto imports = ReadAt<std::uint32_t>(header + 0x90);
  constexpr std::size_t entrySize = 20;
  for (const char* entry = program + imports; imports != 0; entry += entrySize) {
    const auto name = ReadAt<std::uint32_t>(entry + 12);
    if (name == 0) break;
    if (strcasecmp(program + name, "ucrtbase.dll") == 0 || strncasecmp(program + name, "api-ms-win-crt", 14) == 0) {
      return GetModuleHandleA("ucrtbase.dll");
    }
  }
  return GetModuleHandleA("msvcrt.dll");
}

// The host's stdout (1) or stderr (2).
void* HostStream(unsigned int number) {
  constexpr std::size_t streamSize = 48;
  void* const runtime = HostRuntime();
  const auto find = FindFunction<void*(WINDOWS_ABI*)(unsigned int)>(runtime, "__acrt_iob_func");
  if (find != nullptr) return find(number);
  const auto first = FindFunction<char*(WINDOWS_ABI*)()>(runtime, "__iob_func");
  return first != nullptr ? first() + number * streamSize : nullptr;
}

// Hooks that run now, and whether the host ends.
std::mutex s_lock;
std::condition_variable s_oneHasEnded;
int s_running;
__thread int t_running;
bool s_hostEnds;

template <typename Task>
void RunHook(Task task) {
  {
    const std::lock_guard<std::mutex> guard(s_lock);
    if (s_hostEnds || !IsWindowsThread()) return;
    ++s_running;
    ++t_running;
  }
  task();
  const std::lock_guard<std::mutex> guard(s_lock);
  --s_running;
  --t_running;
  s_oneHasEnded.notify_all();
}

// A process that exits takes its threads away wherever they are, and one inside a hook may hold a lock of the host's.
// So hooks are waited for, except those that the caller is in, and later ones do not run.
OUT_OF_LINE void EndHooks() {
  std::unique_lock<std::mutex> guard(s_lock);
  s_hostEnds = true;
  // Not without limit: the hook may be one that wants to end the process, too.
  s_oneHasEnded.wait_for(guard, std::chrono::seconds(5), [] { return s_running == t_running; });
}

void Abort() {
  RunHook([] {
    if (s_hostAbort != nullptr) s_hostAbort();
    const auto flush = FindFunction<int(WINDOWS_ABI*)(void*)>(HostRuntime(), "fflush");
    if (flush != nullptr) flush(HostStream(2));  // Wine's newer C runtime buffers the error stream when it is a file
    TerminateProcess(GetCurrentProcess(), 1);    // a signal would start Wine's debugger
  });
}

void Exit(jint code) {
  RunHook([code] {
    if (s_hostExit != nullptr) s_hostExit(code);
    const auto exitHost = FindFunction<void(WINDOWS_ABI*)(int)>(HostRuntime(), "exit");
    if (exitHost != nullptr) exitHost(code);
    TerminateProcess(GetCurrentProcess(), static_cast<std::uint32_t>(code));
  });
}

// The text is formatted here: a list of arguments looks otherwise on Windows.
jint Vfprintf(FILE* stream, const char* format, va_list arguments) {
  char* text = nullptr;
  if (vasprintf(&text, format, arguments) < 0) return -1;
  jint result = 0;
  RunHook([&] {
    std::uint64_t list[] = {reinterpret_cast<std::uint64_t>(text)};
    result = s_hostVfprintf(HostStream(stream == stderr ? 2 : 1), "%s", list);
  });
  std::free(text);
  return result;
}

WINDOWS_ABI int EndHooksNow() {
  EndHooks();
  return 0;
}

template <typename Function>
void Take(JavaVMOption& option, Function& host, void* bridge) {
  host = reinterpret_cast<Function>(option.extraInfo);
  option.extraInfo = bridge;
}

}  // namespace

void BridgeHooks(std::vector<JavaVMOption>& options) {
  static char abortName[] = "abort";
  static char exitName[] = "exit";
  void* const abort = reinterpret_cast<void*>(&Abort);
  void* const exit = reinterpret_cast<void*>(&Exit);
  // The first ones, because of equal options the later counts.
  options.insert(options.begin(), {{abortName, abort}, {exitName, exit}});
  for (std::size_t i = 2; i < options.size(); ++i) {
    JavaVMOption& option = options[i];
    if (option.optionString == nullptr) continue;
    if (std::strcmp(option.optionString, "abort") == 0) Take(option, s_hostAbort, abort);
    if (std::strcmp(option.optionString, "exit") == 0) Take(option, s_hostExit, exit);
    if (std::strcmp(option.optionString, "vfprintf") == 0) {
      Take(option, s_hostVfprintf, reinterpret_cast<void*>(&Vfprintf));
    }
  }
}

void EndHooksAtExit() {
  using Register = void*(WINDOWS_ABI*)(int(WINDOWS_ABI*)());
  void* const runtime = HostRuntime();
  auto atExit = FindFunction<Register>(runtime, "_onexit");
  if (atExit == nullptr) atExit = FindFunction<Register>(runtime, "_crt_atexit");
  if (atExit != nullptr) atExit(&EndHooksNow);
}

}  // namespace hotspot
