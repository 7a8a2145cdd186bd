#include "platform/System.h"

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <type_traits>

namespace torvan::platform {
namespace {

// Forwards every question to the Windows API.
class NativeSystem final : public System {
 public:
  constexpr NativeSystem() = default;

  RegistryKey LocalMachine() override { return HKEY_LOCAL_MACHINE; }

  Status OpenKey(RegistryKey root, const RX::UniChar* subKey, unsigned int access, RegistryKey* key) override {
    HKEY opened = nullptr;
    const Status status = RegOpenKeyExW(static_cast<HKEY>(root), subKey, 0, access, &opened);
    *key = opened;
    return status;
  }

  Status QueryValue(RegistryKey key, const RX::UniChar* name, void* buffer, unsigned int* size) override {
    DWORD type = 0;
    DWORD bytes = *size;
    const Status status =
        RegQueryValueExW(static_cast<HKEY>(key), name, nullptr, &type, static_cast<BYTE*>(buffer), &bytes);
    *size = bytes;
    return status;
  }

  Status EnumerateKey(RegistryKey key, unsigned int index, RX::UniChar* name, unsigned int* length) override {
    DWORD units = *length;
    const Status status =
        RegEnumKeyExW(static_cast<HKEY>(key), index, name, &units, nullptr, nullptr, nullptr, nullptr);
    *length = units;
    return status;
  }

  Status CloseKey(RegistryKey key) override { return RegCloseKey(static_cast<HKEY>(key)); }

  Module LoadModule(const RX::UniChar* path) override { return LoadLibraryW(path); }

  void* FindSymbol(Module module, const char* name) override {
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(module), name));
  }

  void UnloadModule(Module module) override { FreeLibrary(static_cast<HMODULE>(module)); }

  unsigned int FileAttributes(const RX::UniChar* path) override { return GetFileAttributesW(path); }

  Status LastError() override { return static_cast<Status>(GetLastError()); }

  bool StartProcess(RX::UniChar* commandLine, bool inheritHandles, unsigned int creationFlags,
                    StartedProcess* started) override {
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION information{};
    if (!CreateProcessW(nullptr, commandLine, nullptr, nullptr, inheritHandles, creationFlags, nullptr, nullptr,
                        &startup, &information)) {
      return false;
    }
    *started = {information.hProcess, information.hThread, information.dwProcessId};
    return true;
  }

  unsigned int WaitFor(ProcessHandle process, unsigned int milliseconds) override {
    return WaitForSingleObject(process, milliseconds);
  }

  bool ExitCodeOf(ProcessHandle process, unsigned int* exitCode) override {
    DWORD code = 0;
    if (!GetExitCodeProcess(process, &code)) return false;
    *exitCode = code;
    return true;
  }

  bool EndProcess(ProcessHandle process, unsigned int exitCode) override {
    return TerminateProcess(process, exitCode) != 0;
  }

  bool SendConsoleEvent(unsigned int event, unsigned int processGroup) override {
    return GenerateConsoleCtrlEvent(event, processGroup) != 0;
  }

  void ReleaseHandle(ProcessHandle handle) override { CloseHandle(handle); }
};

// Made before any initialiser runs and never destroyed: a host's static objects may hold handles until the very end.
NativeSystem s_native;
static_assert(std::is_trivially_destructible_v<NativeSystem>);

}  // namespace

System& System::Native() noexcept { return s_native; }

}  // namespace torvan::platform
