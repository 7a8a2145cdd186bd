// A scripted operating system for tests.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "fakes/CallLog.h"
#include "fakes/FakeRegistry.h"
#include "platform/System.h"

namespace tests {

// How a process that is started runs and ends.
struct FakeProcess {
  static constexpr int Never = -1;

  unsigned int exitCode = 0;    // its exit code unless it is killed
  int timeouts = 0;             // how many waits with a time-out it outlives; Never: only an endless wait sees its end
  unsigned int waitResult = 0;  // other than WaitEnded: the answer to every wait
  bool exitCodeFails = false;   // asking for the exit code fails
  bool hasThreadHandle = true;  // starting it returns a handle of its first thread
  unsigned int processId = 0;   // 0: 1001, 1002 ... in the order of starting
};

// A scripted System that remembers what it was asked.
// Whatever the script does not name does not exist, as on a real system: keys and values answer StatusFileNotFound,
// modules and symbols null, files NoFileAttributes, processes do not start. A handle that is not open fails the test.
// Script and log are UTF-8. Key and value names compare without regard to case; keys are enumerated in the order of the
// script.
class FakeSystem : public torvan::platform::System {
 public:
  FakeSystem();
  ~FakeSystem();

  // Registry, below HKEY_LOCAL_MACHINE. A key makes its parents; a value makes its key.
  void AddKey(const std::string& key) { m_registry.AddKey(key); }
  void SetValue(const std::string& key, const std::string& name, const std::string& value) {
    SetRawValue(key, name, Widen(value) + RX::UniChar());
  }
  // The value's units exactly as given: no terminating zero is added.
  void SetRawValue(const std::string& key, const std::string& name, const WideText& units) {
    SetBytes(key, name, std::string(reinterpret_cast<const char*>(units.data()), units.size() * sizeof(RX::UniChar)));
  }
  // The value's bytes exactly as given, which need not be whole units.
  void SetBytes(const std::string& key, const std::string& name, const std::string& bytes) {
    m_registry.SetBytes(key, name, bytes);
  }
  void FailOpen(const std::string& key, Status status) { m_registry.FailOpen(key, status); }
  void FailQuery(const std::string& key, const std::string& name, Status status) {
    m_registry.FailQuery(key, name, status);
  }
  void FailEnumeration(const std::string& key, unsigned int index, Status status) {
    m_registry.FailEnumeration(key, index, status);
  }

  using Symbols = std::map<std::string, void*>;
  void AddModule(const std::string& path, const Symbols& symbols = {});

  void AddFile(const std::string& path);
  void AddDirectory(const std::string& path);
  void FailAttributes(const std::string& path, Status status);

  // The processes that the next starts return, in this order.
  void AddProcess(const FakeProcess& process = {});

  // Every call in order, with its arguments. A handle shows as the thing that it belongs to. LocalMachine() is a
  // constant, not a call:
  //   OpenKey(HKLM, Software\JavaSoft, 0x20019)     QueryValue(Software\JavaSoft, JavaHome, 2080)
  //   EnumerateKey(Software\JavaSoft, 0, 256)       CloseKey(Software\JavaSoft)
  //   LoadModule(C:\jvm.dll)  FindSymbol(C:\jvm.dll, JNI_CreateJavaVM)  UnloadModule(C:\jvm.dll)
  //   FileAttributes(C:\jvm.dll)  LastError()       StartProcess(java -version , false, 0)
  //   WaitFor(process 1001, 4294967295)  ExitCodeOf(process 1001)  EndProcess(process 1001, 0)
  //   SendConsoleEvent(0, 1001)  ReleaseHandle(thread 1001)  ReleaseHandle(process 1001)
  const CallLog& Log() const { return m_log; }
  void ClearLog() { m_log.clear(); }

  // What is open now, in the names of the log.
  std::vector<std::string> OpenKeys() const { return m_registry.OpenKeys(); }
  std::vector<std::string> LoadedModules() const;
  std::vector<std::string> OpenHandles() const;

  torvan::platform::RegistryKey LocalMachine() override;
  Status OpenKey(torvan::platform::RegistryKey root, const RX::UniChar* subKey, unsigned int access,
                 torvan::platform::RegistryKey* key) override;
  Status QueryValue(torvan::platform::RegistryKey key, const RX::UniChar* name, void* buffer,
                    unsigned int* size) override;
  Status EnumerateKey(torvan::platform::RegistryKey key, unsigned int index, RX::UniChar* name,
                      unsigned int* length) override;
  Status CloseKey(torvan::platform::RegistryKey key) override;
  torvan::platform::Module LoadModule(const RX::UniChar* path) override;
  void* FindSymbol(torvan::platform::Module module, const char* name) override;
  void UnloadModule(torvan::platform::Module module) override;
  unsigned int FileAttributes(const RX::UniChar* path) override;
  Status LastError() override;
  bool StartProcess(RX::UniChar* commandLine, bool inheritHandles, unsigned int creationFlags,
                    torvan::platform::StartedProcess* started) override;
  unsigned int WaitFor(torvan::platform::ProcessHandle process, unsigned int milliseconds) override;
  bool ExitCodeOf(torvan::platform::ProcessHandle process, unsigned int* exitCode) override;
  bool EndProcess(torvan::platform::ProcessHandle process, unsigned int exitCode) override;
  bool SendConsoleEvent(unsigned int event, unsigned int processGroup) override;
  void ReleaseHandle(torvan::platform::ProcessHandle handle) override;

 private:
  struct FakeModule;
  struct RunningProcess;
  struct Handle;

  // The thing that an open handle belongs to. A handle that is not open fails the test and returns null.
  FakeModule* ModuleOf(torvan::platform::Module module) const;
  Handle* HandleOf(torvan::platform::ProcessHandle handle) const;

  CallLog m_log;
  FakeRegistry m_registry{m_log};
  std::vector<std::unique_ptr<FakeModule>> m_modules;
  std::map<std::string, std::pair<unsigned int, Status>> m_files;  // the attributes, and the error when there are none
  std::vector<FakeProcess> m_nextProcesses;
  std::vector<std::unique_ptr<RunningProcess>> m_processes;
  std::vector<std::unique_ptr<Handle>> m_handles;
  Status m_lastError = torvan::platform::StatusOk;
};

}  // namespace tests
