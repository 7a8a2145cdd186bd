#include "fakes/FakeSystem.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tests {

using namespace torvan::platform;

struct FakeSystem::FakeModule {
  std::string name;
  Symbols symbols;
  int loads;
};

struct FakeSystem::RunningProcess {
  FakeProcess script;
  bool ended;
};

struct FakeSystem::Handle {
  std::string name;
  RunningProcess* process;
};

FakeSystem::FakeSystem() = default;

FakeSystem::~FakeSystem() = default;

FakeSystem::FakeModule* FakeSystem::ModuleOf(Module module) const {
  for (const auto& loaded : m_modules) {
    if (loaded.get() == module && loaded->loads > 0) return loaded.get();
  }
  ADD_FAILURE() << module << " is not a loaded module";
  return nullptr;
}

FakeSystem::Handle* FakeSystem::HandleOf(ProcessHandle handle) const {
  for (const auto& opened : m_handles) {
    if (opened.get() == handle) return opened.get();
  }
  ADD_FAILURE() << handle << " is not an open handle";
  return nullptr;
}

// --- The script ---

void FakeSystem::AddModule(const std::string& path, const Symbols& symbols) {
  m_modules.emplace_back(new FakeModule{path, symbols, 0});
}

void FakeSystem::AddFile(const std::string& path) { m_files[path] = {0x20, StatusOk}; }
void FakeSystem::AddDirectory(const std::string& path) { m_files[path] = {DirectoryAttribute, StatusOk}; }
void FakeSystem::FailAttributes(const std::string& path, Status status) { m_files[path] = {NoFileAttributes, status}; }
void FakeSystem::AddProcess(const FakeProcess& process) { m_nextProcesses.push_back(process); }

// --- What is open ---

std::vector<std::string> FakeSystem::LoadedModules() const {
  std::vector<std::string> names;
  for (const auto& module : m_modules) names.insert(names.end(), static_cast<std::size_t>(module->loads), module->name);
  return names;
}

std::vector<std::string> FakeSystem::OpenHandles() const {
  std::vector<std::string> names;
  for (const auto& handle : m_handles) names.push_back(handle->name);
  return names;
}

// --- Registry ---

RegistryKey FakeSystem::LocalMachine() { return m_registry.LocalMachine(); }

Status FakeSystem::OpenKey(RegistryKey root, const RX::UniChar* subKey, unsigned int access, RegistryKey* key) {
  return m_registry.Open(root, Narrow(subKey), access, key);
}

Status FakeSystem::QueryValue(RegistryKey key, const RX::UniChar* name, void* buffer, unsigned int* size) {
  return m_registry.Query(key, Narrow(name), buffer, size);
}

Status FakeSystem::EnumerateKey(RegistryKey key, unsigned int index, RX::UniChar* name, unsigned int* length) {
  return m_registry.Enumerate(key, index, name, length);
}

Status FakeSystem::CloseKey(RegistryKey key) { return m_registry.Close(key); }

// --- Modules and files ---

Module FakeSystem::LoadModule(const RX::UniChar* path) {
  NoteCall(m_log, "LoadModule", {Narrow(path)});
  for (const auto& module : m_modules) {
    if (module->name != Narrow(path)) continue;
    ++module->loads;
    return module.get();
  }
  return nullptr;
}

void* FakeSystem::FindSymbol(Module module, const char* name) {
  FakeModule* const loaded = ModuleOf(module);
  if (loaded == nullptr) return nullptr;
  NoteCall(m_log, "FindSymbol", {loaded->name, name});
  const auto found = loaded->symbols.find(name);
  return found != loaded->symbols.end() ? found->second : nullptr;
}

void FakeSystem::UnloadModule(Module module) {
  FakeModule* const loaded = ModuleOf(module);
  if (loaded == nullptr) return;
  NoteCall(m_log, "UnloadModule", {loaded->name});
  --loaded->loads;
}

unsigned int FakeSystem::FileAttributes(const RX::UniChar* path) {
  NoteCall(m_log, "FileAttributes", {Narrow(path)});
  const auto found = m_files.find(Narrow(path));
  const auto [attributes, error] =
      found != m_files.end() ? found->second : std::pair<unsigned int, Status>(NoFileAttributes, StatusFileNotFound);
  if (attributes == NoFileAttributes) m_lastError = error;
  return attributes;
}

Status FakeSystem::LastError() {
  NoteCall(m_log, "LastError", {});
  return m_lastError;
}

// --- Processes ---

bool FakeSystem::StartProcess(RX::UniChar* commandLine, bool inheritHandles, unsigned int creationFlags,
                              StartedProcess* started) {
  NoteCall(m_log, "StartProcess",
           {Narrow(commandLine), inheritHandles ? "true" : "false", std::to_string(creationFlags)});
  if (m_nextProcesses.empty()) return false;
  m_processes.emplace_back(new RunningProcess{m_nextProcesses.front(), false});
  m_nextProcesses.erase(m_nextProcesses.begin());
  RunningProcess* const process = m_processes.back().get();
  if (process->script.processId == 0) process->script.processId = 1000 + static_cast<unsigned int>(m_processes.size());
  const std::string id = std::to_string(process->script.processId);
  started->processId = process->script.processId;
  started->process = m_handles.emplace_back(new Handle{"process " + id, process}).get();
  started->thread = nullptr;
  if (process->script.hasThreadHandle) {
    started->thread = m_handles.emplace_back(new Handle{"thread " + id, process}).get();
  }
  return true;
}

unsigned int FakeSystem::WaitFor(ProcessHandle handle, unsigned int milliseconds) {
  Handle* const opened = HandleOf(handle);
  if (opened == nullptr) return WaitFailed;
  NoteCall(m_log, "WaitFor", {opened->name, std::to_string(milliseconds)});
  RunningProcess& process = *opened->process;
  if (process.script.waitResult != WaitEnded) return process.script.waitResult;
  if (!process.ended && milliseconds != WaitInfinite && process.script.timeouts != 0) {
    if (process.script.timeouts > 0) --process.script.timeouts;
    return WaitTimeout;
  }
  process.ended = true;
  return WaitEnded;
}

bool FakeSystem::ExitCodeOf(ProcessHandle handle, unsigned int* exitCode) {
  Handle* const opened = HandleOf(handle);
  if (opened == nullptr) return false;
  NoteCall(m_log, "ExitCodeOf", {opened->name});
  if (opened->process->script.exitCodeFails) return false;
  *exitCode = opened->process->ended ? opened->process->script.exitCode : ExitCodeOfRunning;
  return true;
}

bool FakeSystem::EndProcess(ProcessHandle handle, unsigned int exitCode) {
  Handle* const opened = HandleOf(handle);
  if (opened == nullptr) return false;
  NoteCall(m_log, "EndProcess", {opened->name, std::to_string(exitCode)});
  if (opened->process->ended) return false;
  opened->process->script.exitCode = exitCode;
  opened->process->ended = true;
  return true;
}

bool FakeSystem::SendConsoleEvent(unsigned int event, unsigned int processGroup) {
  NoteCall(m_log, "SendConsoleEvent", {std::to_string(event), std::to_string(processGroup)});
  return std::any_of(m_processes.begin(), m_processes.end(),
                     [&](const auto& process) { return process->script.processId == processGroup && !process->ended; });
}

void FakeSystem::ReleaseHandle(ProcessHandle handle) {
  Handle* const opened = HandleOf(handle);
  if (opened == nullptr) return;
  NoteCall(m_log, "ReleaseHandle", {opened->name});
  m_handles.erase(std::remove_if(m_handles.begin(), m_handles.end(),
                                 [&](const auto& candidate) { return candidate.get() == handle; }),
                  m_handles.end());
}

}  // namespace tests
