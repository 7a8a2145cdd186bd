#include <torvan/java/Failure.h>
#include <torvan/java/Vm.h>
#include <torvan/java/detail/Environment.h>

#include <string>

#include "java/PathText.h"
#include "java/Threads.h"
#include "java/VmHooks.h"
#include "java/VmLibrary.h"
#include "java/VmOptions.h"
#include "java/VmState.h"

namespace torvan::java {

using detail::VmLibrary;

namespace {

const char* WordsFor(jint status) {
  constexpr struct {
    jint status;
    const char* words;
  } Rows[] = {
      {JNI_ERR, "it refuses the options (JNI_ERR)"},
      {JNI_EDETACHED, "the thread is not attached (JNI_EDETACHED)"},
      {JNI_EVERSION, "it does not offer the JNI version that was asked for (JNI_EVERSION)"},
      {JNI_ENOMEM, "there is not enough memory (JNI_ENOMEM)"},
      {JNI_EEXIST, "there is a Java VM already (JNI_EEXIST)"},
      {JNI_EINVAL, "it refuses the options (JNI_EINVAL)"},
  };
  for (const auto& row : Rows) {
    if (row.status == status) return row.words;
  }
  return "for a reason that JNI does not name";
}

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
    for (const std::string& text : m_options.Texts()) m_encoded.push_back(detail::OptionText(text));
    // Last, because nothing may fail between this and the creation.
    m_records.reserve(m_encoded.size() + detail::HookCount);
    detail::BeginStart({settings.m_onExit, settings.m_onAbort, settings.m_onOutput}, m_records);
    for (std::string& text : m_encoded) m_records.push_back({text.data(), nullptr});
  }

  void Create() {
    JavaVMInitArgs arguments{m_jniVersion, static_cast<jint>(m_records.size()), m_records.data(), JNI_FALSE};
    JavaVM* vm = nullptr;
    void* env = nullptr;
    const jint status = m_library.create(&vm, &env, &arguments);
    if (status != JNI_OK) ThrowRefused(status);
    detail::PrintKept();
    detail::TakeVm(vm, static_cast<JNIEnv*>(env), m_library, m_jniVersion);
    // The VM's end waits for its creator, too, unless that is a daemon as other threads are.
    vm->DetachCurrentThread();
    detail::AttachedEnv("main");
  }

 private:
  [[noreturn]] void ThrowRefused(jint status) const {
    const std::string printed = OneLine(detail::TakeKept());
    const std::string option = OptionAtFault(m_options.Texts(), printed);
    std::string text = std::string("The Java VM was not created: ") + WordsFor(status);
    if (!printed.empty()) text += ". It printed: " + printed;
    if (!option.empty()) text += ". The option is " + option;
    throw StartFailure("java/VmStart", __LINE__, text + ". The runtime is " + detail::ToText(m_library.path));
  }

  const VmLibrary& m_library;
  jint m_jniVersion;
  VmOptions m_options;
  std::vector<JavaVMOption> m_records;
  std::vector<std::string> m_encoded;
};

Vm StartVm(const VmSettings& settings) {
  if (detail::TheVm().ending.load() != nullptr) ThrowEnded();  // before the lock is waited for
  const std::lock_guard<std::recursive_mutex> guard(detail::TheVm().lock);
  RequireNoVm();
  const VmLibrary library = detail::LoadVmLibrary(VmOptions::LibraryOf(settings));
  VmStart(settings, library).Create();
  return Vm(true);
}

}  // namespace torvan::java
