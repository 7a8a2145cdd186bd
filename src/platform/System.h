// The questions that the library asks the operating system.
#pragma once

#include <rx/Text.h>

namespace torvan::platform {

// A status code of the Windows API; every system answers in these. Zero is success.
using Status = long;

constexpr Status StatusOk = 0;
constexpr Status StatusFileNotFound = 2;
constexpr Status StatusAccessDenied = 5;
constexpr Status StatusInvalidHandle = 6;
constexpr Status StatusNotEnoughMemory = 8;
constexpr Status StatusGeneralFailure = 31;
constexpr Status StatusSharingViolation = 32;
constexpr Status StatusLockViolation = 33;
constexpr Status StatusMoreData = 234;
constexpr Status StatusNoMoreItems = 259;

using RegistryKey = void*;    // an open registry key, or a root key
using Module = void*;         // a loaded dynamic library
using ProcessHandle = void*;  // a handle of a process or of its first thread

constexpr unsigned int KeyRead = 0x20019;  // the access right to read a key

constexpr unsigned int NoFileAttributes = 0xFFFFFFFF;  // the answer for a file that cannot be asked
constexpr unsigned int DirectoryAttribute = 16;

constexpr unsigned int WaitInfinite = 0xFFFFFFFF;
constexpr unsigned int WaitEnded = 0;
constexpr unsigned int WaitTimeout = 258;
constexpr unsigned int WaitFailed = 0xFFFFFFFF;

constexpr unsigned int ExitCodeOfRunning = 259;  // what a process that has not ended gives as its exit code

constexpr unsigned int ControlC = 0;
constexpr unsigned int ControlBreak = 1;

// What starting a process gives; the caller closes both handles, null ones excepted.
struct StartedProcess {
  ProcessHandle process;
  ProcessHandle thread;
  unsigned int processId;
};

// The operating system.
// One member is one question, asked with the caller's own arguments and answered with the system's own codes; nothing
// is decided below this interface. Sizes are bytes, lengths UTF-16 units. Members throw nothing.
class System {
 public:
  // The system in force: the native one, unless a test has put another in its place.
  static System& Current() noexcept;
  static System& Native() noexcept;

  // HKEY_LOCAL_MACHINE.
  virtual RegistryKey LocalMachine() = 0;
  virtual Status OpenKey(RegistryKey root, const RX::UniChar* subKey, unsigned int access, RegistryKey* key) = 0;
  // Fills `buffer` of `*size` bytes and sets `*size` to the bytes the value has; StatusMoreData when it has more.
  virtual Status QueryValue(RegistryKey key, const RX::UniChar* name, void* buffer, unsigned int* size) = 0;
  // Fills `name` of `*length` units with the name of the subkey at `index` and sets `*length` without the final zero.
  virtual Status EnumerateKey(RegistryKey key, unsigned int index, RX::UniChar* name, unsigned int* length) = 0;
  virtual Status CloseKey(RegistryKey key) = 0;

  // Null when the library cannot be loaded.
  virtual Module LoadModule(const RX::UniChar* path) = 0;
  virtual void* FindSymbol(Module module, const char* name) = 0;
  virtual void UnloadModule(Module module) = 0;

  // NoFileAttributes on failure; LastError then says why.
  virtual unsigned int FileAttributes(const RX::UniChar* path) = 0;
  virtual Status LastError() = 0;

  // Starts a process from a command line, which the system may write into; false on failure.
  virtual bool StartProcess(RX::UniChar* commandLine, bool inheritHandles, unsigned int creationFlags,
                            StartedProcess* started) = 0;
  virtual unsigned int WaitFor(ProcessHandle process, unsigned int milliseconds) = 0;
  virtual bool ExitCodeOf(ProcessHandle process, unsigned int* exitCode) = 0;
  virtual bool EndProcess(ProcessHandle process, unsigned int exitCode) = 0;
  virtual bool SendConsoleEvent(unsigned int event, unsigned int processGroup) = 0;
  virtual void ReleaseHandle(ProcessHandle handle) = 0;

 protected:
  System() = default;
  ~System() = default;
  System(const System&) = delete;
  System& operator=(const System&) = delete;

 private:
  friend class SystemScope;

  static System* s_current;
};

// Puts a system in force for the life of the scope. For tests.
class SystemScope {
 public:
  explicit SystemScope(System& system) noexcept : m_previous(System::s_current) { System::s_current = &system; }
  ~SystemScope() { System::s_current = m_previous; }
  SystemScope(const SystemScope&) = delete;
  SystemScope& operator=(const SystemScope&) = delete;

 private:
  System* m_previous;
};

}  // namespace torvan::platform
