#include "platform/System.h"

#include <dlfcn.h>
#include <mirel/base/MemoryException.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <type_traits>

#include "EmptyText.h"
#include "platform/linux/CommandLine.h"
#include "platform/linux/JavaRuntimes.h"
#include "platform/linux/Processes.h"
#include "platform/linux/Registry.h"

namespace torvan::platform {

using mirel::base::CMemoryException;
using mirel::base::CRef;
using mirel::base::CString;
using mirel::base::CUnicodeString;

namespace {

constexpr unsigned int OrdinaryFileAttribute = 128;

char s_localMachine;  // its address is the root key

thread_local Status s_lastError = StatusOk;

CString ToUtf8(const RX::UniChar* text) { return CUnicodeString(text).ToUTF8(); }

Status StatusOf(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return StatusFileNotFound;
    case EACCES:
      return StatusAccessDenied;
    default:
      return StatusGeneralFailure;
  }
}

// The result of a question, or `outOfMemory` when memory runs out.
template <typename Answer, typename Question>
Answer AnswerOr(Answer outOfMemory, Question question) {
  try {
    return question();
  } catch (const CMemoryException&) {
    return outOfMemory;
  }
}

// Answers for Linux in the terms of the Windows API.
class NativeSystem final : public System {
 public:
  constexpr NativeSystem() = default;

  RegistryKey LocalMachine() override { return &s_localMachine; }

  // Every key opened below the root reads the disk again, so that a newly installed runtime is found. The view of
  // 32-bit programs is empty.
  Status OpenKey(RegistryKey root, const RX::UniChar* subKey, unsigned int access, RegistryKey* key) override {
    if ((access & ~KeyRead) != 0) return StatusAccessDenied;
    return AnswerOr(StatusNotEnoughMemory, [=]() -> Status {
      if (root != &s_localMachine) return static_cast<const OpenedKey*>(root)->Open(subKey, key);
      const CUnicodeString viewOf32Bit = RX_TEXT("Software\\Wow6432Node\\");
      const CUnicodeString view = CUnicodeString(subKey).Mid(0, viewOf32Bit.GetLength());
      if (view.CompareIgnoreCase(viewOf32Bit) == 0) return StatusFileNotFound;
      const CRef<Registry> registry(new Registry);
      AddJavaRuntimes(std::getenv("JAVA_HOME"), "/usr/lib/jvm", *registry);
      return OpenedKey(registry, CUnicodeString()).Open(subKey, key);
    });
  }

  Status QueryValue(RegistryKey key, const RX::UniChar* name, void* buffer, unsigned int* size) override {
    return AnswerOr(StatusNotEnoughMemory,
                    [=] { return static_cast<const OpenedKey*>(key)->Query(name, buffer, size); });
  }

  Status EnumerateKey(RegistryKey key, unsigned int index, RX::UniChar* name, unsigned int* length) override {
    return AnswerOr(StatusNotEnoughMemory,
                    [=] { return static_cast<const OpenedKey*>(key)->Enumerate(index, name, length); });
  }

  Status CloseKey(RegistryKey key) override {
    delete static_cast<OpenedKey*>(key);
    return StatusOk;
  }

  // An empty path, which dlopen takes for the program itself, names no library.
  Module LoadModule(const RX::UniChar* path) override {
    if (IsEmpty(path)) return nullptr;
    return AnswerOr<Module>(nullptr, [=] { return dlopen(ToUtf8(path), RTLD_NOW | RTLD_LOCAL); });
  }

  void* FindSymbol(Module module, const char* name) override { return dlsym(module, name); }

  void UnloadModule(Module module) override { dlclose(module); }

  unsigned int FileAttributes(const RX::UniChar* path) override {
    struct stat information {};
    s_lastError = AnswerOr(StatusNotEnoughMemory, [&] {
      const CString text = ToUtf8(path != nullptr ? path : RX_TEXT(""));
      return stat(text, &information) == 0 ? StatusOk : StatusOf(errno);
    });
    if (s_lastError != StatusOk) return NoFileAttributes;
    return S_ISDIR(information.st_mode) ? DirectoryAttribute : OrdinaryFileAttribute;
  }

  Status LastError() override { return s_lastError; }

  // Creation flags have no counterpart here.
  bool StartProcess(RX::UniChar* commandLine, bool inheritHandles, unsigned int creationFlags,
                    StartedProcess* started) override {
    if (commandLine == nullptr || creationFlags != 0) return false;
    return AnswerOr(
        false, [=] { return StartChild(CommandLine(ToUtf8(commandLine)).GetArguments(), inheritHandles, started); });
  }

  unsigned int WaitFor(ProcessHandle process, unsigned int milliseconds) override {
    return WaitForChild(process, milliseconds);
  }

  bool ExitCodeOf(ProcessHandle process, unsigned int* exitCode) override { return ExitCodeOfChild(process, exitCode); }
  bool EndProcess(ProcessHandle process, unsigned int exitCode) override { return EndChild(process, exitCode); }
  bool SendConsoleEvent(unsigned int event, unsigned int processGroup) override {
    return SignalChild(event, processGroup);
  }
  void ReleaseHandle(ProcessHandle handle) override { ReleaseChild(handle); }
};

// Made before any initialiser runs and never destroyed: a host's static objects may hold handles until the very end.
NativeSystem s_native;
static_assert(std::is_trivially_destructible_v<NativeSystem>);

}  // namespace

System& System::Native() noexcept { return s_native; }

}  // namespace torvan::platform
