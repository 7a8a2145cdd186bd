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

constexpr unsigned int KeyRead = 0x20019;  // the right to read a key, its values and the names of its subkeys

constexpr unsigned int NoFileAttributes = 0xFFFFFFFF;  // the answer for a file that cannot be asked
constexpr unsigned int DirectoryAttribute = 16;

constexpr unsigned int WaitInfinite = 0xFFFFFFFF;
constexpr unsigned int WaitEnded = 0;
constexpr unsigned int WaitTimeout = 258;
constexpr unsigned int WaitFailed = 0xFFFFFFFF;

constexpr unsigned int ExitCodeOfRunning = 259;  // the exit code of a process that has not ended

constexpr unsigned int ControlC = 0;
constexpr unsigned int ControlBreak = 1;

// A process that was started. The caller releases both handles; `thread` may be null.
struct StartedProcess {
  ProcessHandle process;
  ProcessHandle thread;
  unsigned int processId;
};

// The operating system.
// One member is one question. It is passed the caller's own arguments and answered with the system's own codes; nothing
// is decided below this interface. Sizes are in bytes, lengths in UTF-16 units, times in milliseconds. Texts passed in
// end with a zero. A key, module or handle must be open, and must not be null unless the member says so. Members throw
// nothing; where one runs out of memory it says so with its own failure.
//
// Any thread may ask, and several at once. A key that OpenKey opened, and those that were opened below it, are used by
// one thread at a time; so is a process handle, except that several threads may wait for it. Closing a key, unloading a
// module and releasing a handle come after all other uses of it.
class System {
 public:
  // Returns the system that the library asks: the native one, unless a test has installed another.
  static System& Current() noexcept;
  // Returns the real operating system, which exists from load to unload.
  static System& Native() noexcept;

  // Returns the root key HKEY_LOCAL_MACHINE, which is never closed.
  virtual RegistryKey LocalMachine() = 0;
  // Opens a key below `root`, which is the root key or an open one; names ignore case, and a backslash parts them.
  // `access` is KeyRead or a part of it; more than that may be refused with StatusAccessDenied. On StatusOk the caller
  // closes `*key`; it is independent of `root` from then on. StatusFileNotFound for a key that does not exist.
  virtual Status OpenKey(RegistryKey root, const RX::UniChar* subKey, unsigned int access, RegistryKey* key) = 0;
  // Reads a value of any type into `buffer` of `*size` bytes; its name ignores case.
  // Sets `*size` to the bytes that the value has. A null buffer asks for the size alone. StatusMoreData when the value
  // is larger than the buffer, whose contents are undefined then; StatusFileNotFound when there is no such value.
  // A stored text need not end with a zero.
  virtual Status QueryValue(RegistryKey key, const RX::UniChar* name, void* buffer, unsigned int* size) = 0;
  // Reads the name of the subkey at `index` into `name` of `*length` units.
  // Sets `*length` to the units of the name, the zero not counted, which needs room in the buffer, too.
  // StatusMoreData when the name and its zero do not fit; StatusNoMoreItems after the last subkey.
  virtual Status EnumerateKey(RegistryKey key, unsigned int index, RX::UniChar* name, unsigned int* length) = 0;
  // Closes a key that OpenKey opened, once. StatusOk for an open key.
  virtual Status CloseKey(RegistryKey key) = 0;

  // Loads a dynamic library, or counts one more use of a loaded one. Null when it cannot be loaded.
  virtual Module LoadModule(const RX::UniChar* path) = 0;
  // Returns the address of an exported function, valid until the module is unloaded, or null when there is none.
  virtual void* FindSymbol(Module module, const char* name) = 0;
  // Ends one use of a module, never null; the last one to end may unload it.
  virtual void UnloadModule(Module module) = 0;

  // Returns a file's or folder's attributes, DirectoryAttribute among them for a folder.
  // NoFileAttributes when it cannot be asked; LastError then says why.
  virtual unsigned int FileAttributes(const RX::UniChar* path) = 0;
  // Returns the status of the calling thread's last FileAttributes that failed. Asked right after it: any call of the
  // system may change it.
  virtual Status LastError() = 0;

  // Starts a process from a command line of at least one unit, which the system may write into.
  // False when it did not start; `*started` is then unchanged. With `inheritHandles` the child inherits what is
  // inheritable of the host's, without it only the standard streams. `creationFlags` are those of the Windows API; 0 is
  // the only value that every system knows, and Linux starts nothing with another.
  virtual bool StartProcess(RX::UniChar* commandLine, bool inheritHandles, unsigned int creationFlags,
                            StartedProcess* started) = 0;
  // Waits until a process has ended; WaitInfinite waits without limit, 0 does not wait.
  // Returns WaitEnded, WaitTimeout, or WaitFailed, also for null. A process that has ended stays ended.
  virtual unsigned int WaitFor(ProcessHandle process, unsigned int milliseconds) = 0;
  // Reads the exit code of a process, or ExitCodeOfRunning while it runs. False when it is not known, also for null.
  virtual bool ExitCodeOf(ProcessHandle process, unsigned int* exitCode) = 0;
  // Ends a process at once, with this exit code; it need not have ended on return. False when that is refused.
  virtual bool EndProcess(ProcessHandle process, unsigned int exitCode) = 0;
  // Sends ControlC or ControlBreak to a process group, named by the id of the process that leads it. False when that is
  // refused; true does not say that the processes act on it. On Linux, only the process of that id gets it, as a
  // signal.
  virtual bool SendConsoleEvent(unsigned int event, unsigned int processGroup) = 0;
  // Releases a handle, once; the process goes on. Null is allowed.
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

// Makes the library ask this system for the life of the scope. For tests. No other thread asks while a scope begins or
// ends, and scopes end in the reverse order.
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
