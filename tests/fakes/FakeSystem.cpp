#include "fakes/FakeSystem.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstring>

namespace fakes {

using namespace torvan::platform;

namespace {

struct CaseBlind {
  static std::string Fold(std::string text) {
    for (char& byte : text) byte = static_cast<char>(std::toupper(static_cast<unsigned char>(byte)));
    return text;
  }
  bool operator()(const std::string& left, const std::string& right) const { return Fold(left) < Fold(right); }
};

std::string Hexadecimal(unsigned int value) {
  char text[16];
  std::snprintf(text, sizeof(text), "0x%X", value);
  return text;
}

std::string Call(const char* name, const std::vector<std::string>& arguments) {
  std::string text = std::string(name) + "(";
  for (std::size_t i = 0; i < arguments.size(); ++i) text += (i == 0 ? "" : ", ") + arguments[i];
  return text + ")";
}

template <typename List>
std::vector<std::string> NamesOf(const List& list) {
  std::vector<std::string> names;
  for (const auto& entry : list) names.push_back(entry->name);
  return names;
}

// The owned object that a handle given out stands for; none fails the test.
template <typename List>
auto Owned(const List& list, const void* handle, const char* kind) {
  for (const auto& entry : list) {
    if (entry.get() == handle) return entry.get();
  }
  ADD_FAILURE() << handle << " is not an open " << kind;
  return static_cast<decltype(list.front().get())>(nullptr);
}

template <typename List>
void Drop(List& list, const void* handle) {
  list.erase(std::remove_if(list.begin(), list.end(), [&](const auto& entry) { return entry.get() == handle; }),
             list.end());
}

}  // namespace

struct FakeSystem::Key {
  struct Value {
    WideText units;
    Status failure = StatusOk;
  };

  std::string name;
  std::string path;
  Status openFailure = StatusOk;
  std::vector<std::unique_ptr<Key>> children;
  std::map<std::string, Value, CaseBlind> values;
  std::map<unsigned int, Status> enumerationFailures;
};

struct FakeSystem::OpenedKey {
  std::string name;
  Key* key;
};

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

FakeSystem::FakeSystem() : m_localMachine(new Key) { m_localMachine->path = m_localMachine->name = "HKLM"; }

FakeSystem::~FakeSystem() = default;

FakeSystem::Key* FakeSystem::FindKey(Key& from, const std::string& path, bool make) {
  Key* key = &from;
  for (std::size_t start = 0; start < path.size();) {
    const std::size_t end = std::min(path.find('\\', start), path.size());
    const std::string name = path.substr(start, end - start);
    start = end + 1;
    const auto child = std::find_if(key->children.begin(), key->children.end(), [&](const auto& other) {
      return CaseBlind::Fold(other->name) == CaseBlind::Fold(name);
    });
    if (child != key->children.end()) {
      key = child->get();
      continue;
    }
    if (!make) return nullptr;
    key->children.emplace_back(new Key);
    Key& added = *key->children.back();
    added.name = name;
    added.path = key == m_localMachine.get() ? name : key->path + "\\" + name;
    key = &added;
  }
  return key;
}

FakeSystem::Key* FakeSystem::KeyOf(RegistryKey key) const {
  if (key == m_localMachine.get()) return m_localMachine.get();
  OpenedKey* const opened = Owned(m_openKeys, key, "key");
  return opened != nullptr ? opened->key : nullptr;
}

FakeSystem::FakeModule* FakeSystem::ModuleOf(Module module) const {
  FakeModule* const found = Owned(m_modules, module, "module");
  if (found != nullptr && found->loads > 0) return found;
  ADD_FAILURE() << module << " is not a loaded module";
  return nullptr;
}

// --- The script ---

void FakeSystem::AddKey(const std::string& key) { MakeKey(key); }

void FakeSystem::SetValue(const std::string& key, const std::string& name, const std::string& value) {
  SetRawValue(key, name, Widen(value) + RX::UniChar());
}

void FakeSystem::SetRawValue(const std::string& key, const std::string& name, const WideText& units) {
  MakeKey(key).values[name] = {units, StatusOk};
}

void FakeSystem::FailOpen(const std::string& key, Status status) { MakeKey(key).openFailure = status; }

void FakeSystem::FailQuery(const std::string& key, const std::string& name, Status status) {
  MakeKey(key).values[name] = {{}, status};
}

void FakeSystem::FailEnumeration(const std::string& key, unsigned int index, Status status) {
  MakeKey(key).enumerationFailures[index] = status;
}

void FakeSystem::AddModule(const std::string& path, const Symbols& symbols) {
  m_modules.emplace_back(new FakeModule{path, symbols, 0});
}

void FakeSystem::AddFile(const std::string& path) { m_files[path] = {0x20, StatusOk}; }
void FakeSystem::AddDirectory(const std::string& path) { m_files[path] = {DirectoryAttribute, StatusOk}; }
void FakeSystem::FailAttributes(const std::string& path, Status status) { m_files[path] = {NoFileAttributes, status}; }
void FakeSystem::AddProcess(const FakeProcess& process) { m_nextProcesses.push_back(process); }

// --- What is open ---

std::vector<std::string> FakeSystem::OpenKeys() const { return NamesOf(m_openKeys); }

std::vector<std::string> FakeSystem::LoadedModules() const {
  std::vector<std::string> names;
  for (const auto& module : m_modules) names.insert(names.end(), static_cast<std::size_t>(module->loads), module->name);
  return names;
}

std::vector<std::string> FakeSystem::OpenHandles() const { return NamesOf(m_handles); }

// --- Registry ---

RegistryKey FakeSystem::LocalMachine() { return m_localMachine.get(); }

Status FakeSystem::OpenKey(RegistryKey root, const RX::UniChar* subKey, unsigned int access, RegistryKey* key) {
  Key* const parent = KeyOf(root);
  if (parent == nullptr) return StatusInvalidHandle;
  Note(Call("OpenKey", {parent->path, Narrow(subKey), Hexadecimal(access)}));
  Key* const found = FindKey(*parent, Narrow(subKey), false);
  if (found == nullptr) return StatusFileNotFound;
  if (found->openFailure != StatusOk) return found->openFailure;
  m_openKeys.emplace_back(new OpenedKey{found->path, found});
  *key = m_openKeys.back().get();
  return StatusOk;
}

Status FakeSystem::QueryValue(RegistryKey key, const RX::UniChar* name, void* buffer, unsigned int* size) {
  Key* const opened = KeyOf(key);
  if (opened == nullptr) return StatusInvalidHandle;
  Note(Call("QueryValue", {opened->path, Narrow(name), std::to_string(*size)}));
  const auto found = opened->values.find(Narrow(name));
  if (found == opened->values.end()) return StatusFileNotFound;
  if (found->second.failure != StatusOk) return found->second.failure;
  const WideText& units = found->second.units;
  const unsigned int room = *size;
  *size = static_cast<unsigned int>(units.size() * sizeof(RX::UniChar));
  if (buffer == nullptr) return StatusOk;
  if (room < *size) return StatusMoreData;
  std::memcpy(buffer, units.data(), *size);
  return StatusOk;
}

Status FakeSystem::EnumerateKey(RegistryKey key, unsigned int index, RX::UniChar* name, unsigned int* length) {
  Key* const opened = KeyOf(key);
  if (opened == nullptr) return StatusInvalidHandle;
  Note(Call("EnumerateKey", {opened->path, std::to_string(index), std::to_string(*length)}));
  const auto failure = opened->enumerationFailures.find(index);
  if (failure != opened->enumerationFailures.end()) return failure->second;
  if (index >= opened->children.size()) return StatusNoMoreItems;
  const WideText text = Widen(opened->children[index]->name);
  if (*length <= text.size()) return StatusMoreData;
  std::memcpy(name, text.c_str(), (text.size() + 1) * sizeof(RX::UniChar));
  *length = static_cast<unsigned int>(text.size());
  return StatusOk;
}

Status FakeSystem::CloseKey(RegistryKey key) {
  Key* const opened = KeyOf(key);
  if (opened == nullptr) return StatusInvalidHandle;
  Note(Call("CloseKey", {opened->path}));
  Drop(m_openKeys, key);
  return StatusOk;
}

// --- Modules and files ---

Module FakeSystem::LoadModule(const RX::UniChar* path) {
  Note(Call("LoadModule", {Narrow(path)}));
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
  Note(Call("FindSymbol", {loaded->name, name}));
  const auto found = loaded->symbols.find(name);
  return found != loaded->symbols.end() ? found->second : nullptr;
}

void FakeSystem::UnloadModule(Module module) {
  FakeModule* const loaded = ModuleOf(module);
  if (loaded == nullptr) return;
  Note(Call("UnloadModule", {loaded->name}));
  --loaded->loads;
}

unsigned int FakeSystem::FileAttributes(const RX::UniChar* path) {
  Note(Call("FileAttributes", {Narrow(path)}));
  const auto found = m_files.find(Narrow(path));
  const auto [attributes, error] =
      found != m_files.end() ? found->second : std::pair<unsigned int, Status>(NoFileAttributes, StatusFileNotFound);
  if (attributes == NoFileAttributes) m_lastError = error;
  return attributes;
}

Status FakeSystem::LastError() {
  Note(Call("LastError", {}));
  return m_lastError;
}

// --- Processes ---

bool FakeSystem::StartProcess(RX::UniChar* commandLine, bool inheritHandles, unsigned int creationFlags,
                              StartedProcess* started) {
  Note(Call("StartProcess", {Narrow(commandLine), inheritHandles ? "true" : "false", std::to_string(creationFlags)}));
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
  Handle* const opened = Owned(m_handles, handle, "handle");
  if (opened == nullptr) return WaitFailed;
  Note(Call("WaitFor", {opened->name, std::to_string(milliseconds)}));
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
  Handle* const opened = Owned(m_handles, handle, "handle");
  if (opened == nullptr) return false;
  Note(Call("ExitCodeOf", {opened->name}));
  if (opened->process->script.exitCodeFails) return false;
  *exitCode = opened->process->ended ? opened->process->script.exitCode : ExitCodeOfRunning;
  return true;
}

bool FakeSystem::EndProcess(ProcessHandle handle, unsigned int exitCode) {
  Handle* const opened = Owned(m_handles, handle, "handle");
  if (opened == nullptr) return false;
  Note(Call("EndProcess", {opened->name, std::to_string(exitCode)}));
  if (opened->process->ended) return false;
  opened->process->script.exitCode = exitCode;
  opened->process->ended = true;
  return true;
}

bool FakeSystem::SendConsoleEvent(unsigned int event, unsigned int processGroup) {
  Note(Call("SendConsoleEvent", {std::to_string(event), std::to_string(processGroup)}));
  return std::any_of(m_processes.begin(), m_processes.end(),
                     [&](const auto& process) { return process->script.processId == processGroup && !process->ended; });
}

void FakeSystem::ReleaseHandle(ProcessHandle handle) {
  Handle* const opened = Owned(m_handles, handle, "handle");
  if (opened == nullptr) return;
  Note(Call("ReleaseHandle", {opened->name}));
  Drop(m_handles, handle);
}

}  // namespace fakes
