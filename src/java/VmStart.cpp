#include <torvan/java/Failure.h>
#include <torvan/java/StaticMethod.h>
#include <torvan/java/Vm.h>
#include <torvan/java/detail/Environment.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "java/JniStatus.h"
#include "java/PathText.h"
#include "java/Threads.h"
#include "java/VmHooks.h"
#include "java/VmLibrary.h"
#include "java/VmOptions.h"
#include "java/VmState.h"

namespace torvan::java {

using detail::VmLibrary;

namespace {

// HotSpot names an option that it does not know, but leaves out the beginning of one with -XX.
std::string OptionAtFault(const std::vector<std::string>& options, const std::string& printed) {
  for (const std::string& option : options) {
    if (printed.find(option) != std::string::npos) return {};  // it is named
  }
  const std::size_t first = printed.find('\'');
  const std::size_t last = first == std::string::npos ? first : printed.find('\'', first + 1);
  if (last == std::string::npos) return {};
  const std::string word = printed.substr(first + 1, last - first - 1);
  for (const std::string& option : options) {
    if (option.find(word) != std::string::npos) return option;
  }
  return {};
}

// What was printed as one line.
std::string OneLine(const std::string& printed) {
  std::string line;
  for (const char c : printed) {
    const char next = c == '\n' || c == '\r' ? ' ' : c;
    if (next != ' ' || (!line.empty() && line.back() != ' ')) line += next;
  }
  while (!line.empty() && line.back() == ' ') line.pop_back();
  return line;
}

[[noreturn]] void ThrowEnded() {
  throw StartFailure("java/VmStart", __LINE__, "The Java VM has ended; a process can have one, and only once");
}

void RequireNoVm() {
  const std::string reason = "This process has a Java VM already; a process can have one, and only once";
  if (detail::TheVm().end.has_value()) ThrowEnded();
  if (detail::HasVm()) throw StartFailure("java/VmStart", __LINE__, reason);
  const VmLibrary loaded = detail::LoadedVmLibrary();
  JavaVM* vm = nullptr;
  jsize count = 0;
  if (loaded.list != nullptr && loaded.list(&vm, 1, &count) == JNI_OK && count > 0) {
    throw StartFailure("java/VmStart", __LINE__, reason + "; join it with JoinVm()");
  }
}

}  // namespace

// The settings' friend, which only starts the VM with them.
class VmStart {
 public:
  VmStart(const VmSettings& settings, const VmLibrary& library)
      : m_library(library), m_jniVersion(settings.m_jniVersion), m_options(settings, library.path) {
    RequirePathsThatCount();
    // Last, because nothing may fail between this and the creation.
    m_records.reserve(m_options.Encoded().size() + detail::HookCount);
    detail::BeginStart({settings.m_onExit, settings.m_onAbort, settings.m_onOutput}, m_records);
    for (std::string& text : m_options.Encoded()) m_records.push_back({text.data(), nullptr});
  }

  void Create() {
    JavaVMInitArgs arguments{m_jniVersion, static_cast<jint>(m_records.size()), m_records.data(), JNI_FALSE};
    JavaVM* vm = nullptr;
    void* env = nullptr;
    const jint status = m_library.create(&vm, &env, &arguments);
    if (status != JNI_OK) {
      if (status != JNI_EVERSION) detail::TheVm().refusing = m_library.path;
      ThrowRefused(status);
    }
    detail::PrintKept();
    detail::TakeVm(vm, static_cast<JNIEnv*>(env), m_library, m_jniVersion);
    // The end of the VM waits for the thread that created it, unless that is a daemon as the host's other threads are.
    vm->DetachCurrentThread();
    detail::AttachedEnv("main");
  }

  // The end of the start, when calls are possible. Throws Error where Java refuses it.
  void SetLateProperties() const {
    static constexpr StaticMethod<std::optional<std::string>(std::string_view, std::string_view)> SetProperty{
        "java/lang/System", "setProperty"};
    for (const auto& [name, value] : m_options.LateProperties()) SetProperty(name, value);
  }

 private:
  // HotSpot keeps the list of properties of a creation that it has refused, and adds the next one's to it: what is set
  // is then the first class path of the list, and what counts is the last, an empty one.
  void RequirePathsThatCount() const {
    if (detail::TheVm().refusing != m_library.path) return;
    for (const std::string_view path : {"class", "library"}) {
      const std::string option = "-Djava." + std::string(path) + ".path=";
      const auto sets = [&](const std::string& text) { return text.rfind(option, 0) == 0; };
      if (std::none_of(m_options.Texts().begin(), m_options.Texts().end(), sets)) continue;
      throw StartFailure("java/VmStart", __LINE__,
                         "The Java VM has refused options in this process before, and would ignore the " +
                             std::string(path) + " path now: start it in another process, or without a " +
                             std::string(path) + " path");
    }
  }

  [[noreturn]] void ThrowRefused(jint status) const {
    const std::string printed = OneLine(detail::TakeKept());
    const std::string option = OptionAtFault(m_options.Texts(), printed);
    std::string text = "The Java VM was not created: " + detail::WordsFor(status, "the options");
    if (!printed.empty()) text += ". It printed: " + printed;
    if (!option.empty()) text += ". The option is " + option;
    throw StartFailure("java/VmStart", __LINE__, text + ". The runtime is " + detail::ToText(m_library.path));
  }

  const VmLibrary& m_library;
  jint m_jniVersion;
  VmOptions m_options;
  std::vector<JavaVMOption> m_records;
};

Vm StartVm(const VmSettings& settings) {
  const detail::VmLock lock = detail::LockVm(&detail::IsEnding);
  if (!lock) ThrowEnded();
  RequireNoVm();
  const VmLibrary library = detail::LoadVmLibrary(VmOptions::LibraryOf(settings));
  VmStart start(settings, library);
  start.Create();
  Vm vm(true);  // ended where the following fails
  start.SetLateProperties();
  return vm;
}

}  // namespace torvan::java
