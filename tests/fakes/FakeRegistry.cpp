#include "fakes/FakeRegistry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <map>

namespace tests {

using namespace torvan::platform;

namespace {

std::string Fold(std::string text) {
  for (char& byte : text) byte = static_cast<char>(std::toupper(static_cast<unsigned char>(byte)));
  return text;
}

struct CaseBlind {
  bool operator()(const std::string& left, const std::string& right) const { return Fold(left) < Fold(right); }
};

std::string Hexadecimal(unsigned int value) {
  char text[16];
  std::snprintf(text, sizeof(text), "0x%X", value);
  return text;
}

}  // namespace

struct FakeRegistry::Key {
  struct Value {
    std::string bytes;
    Status failure = StatusOk;
  };

  std::string name;
  std::string path;
  Status openFailure = StatusOk;
  std::vector<std::unique_ptr<Key>> children;
  std::map<std::string, Value, CaseBlind> values;
  std::map<unsigned int, Status> enumerationFailures;
};

struct FakeRegistry::OpenedKey {
  Key* key;
};

FakeRegistry::FakeRegistry(CallLog& log) : m_log(log), m_localMachine(new Key) { m_localMachine->path = "HKLM"; }

FakeRegistry::~FakeRegistry() = default;

FakeRegistry::Key* FakeRegistry::FindKey(Key& from, const std::string& path, bool make) {
  Key* key = &from;
  for (std::size_t start = 0; start < path.size();) {
    const std::size_t end = std::min(path.find('\\', start), path.size());
    const std::string name = path.substr(start, end - start);
    start = end + 1;
    const auto child = std::find_if(key->children.begin(), key->children.end(),
                                    [&](const auto& other) { return Fold(other->name) == Fold(name); });
    if (child != key->children.end()) {
      key = child->get();
      continue;
    }
    if (!make) return nullptr;
    Key& added = *key->children.emplace_back(new Key);
    added.name = name;
    added.path = key == m_localMachine.get() ? name : key->path + "\\" + name;
    key = &added;
  }
  return key;
}

FakeRegistry::Key* FakeRegistry::KeyOf(RegistryKey key) const {
  if (key == m_localMachine.get()) return m_localMachine.get();
  for (const auto& opened : m_openKeys) {
    if (opened.get() == key) return opened->key;
  }
  ADD_FAILURE() << key << " is not an open key";
  return nullptr;
}

void FakeRegistry::SetBytes(const std::string& key, const std::string& name, const std::string& bytes) {
  MakeKey(key).values[name] = {bytes, StatusOk};
}

void FakeRegistry::FailOpen(const std::string& key, Status status) { MakeKey(key).openFailure = status; }

void FakeRegistry::FailQuery(const std::string& key, const std::string& name, Status status) {
  MakeKey(key).values[name] = {{}, status};
}

void FakeRegistry::FailEnumeration(const std::string& key, unsigned int index, Status status) {
  MakeKey(key).enumerationFailures[index] = status;
}

std::vector<std::string> FakeRegistry::OpenKeys() const {
  std::vector<std::string> paths;
  for (const auto& opened : m_openKeys) paths.push_back(opened->key->path);
  return paths;
}

Status FakeRegistry::Open(RegistryKey root, const std::string& subKey, unsigned int access, RegistryKey* key) {
  Key* const parent = KeyOf(root);
  if (parent == nullptr) return StatusInvalidHandle;
  NoteCall(m_log, "OpenKey", {parent->path, subKey, Hexadecimal(access)});
  Key* const found = FindKey(*parent, subKey, false);
  if (found == nullptr) return StatusFileNotFound;
  if (found->openFailure != StatusOk) return found->openFailure;
  *key = m_openKeys.emplace_back(new OpenedKey{found}).get();
  return StatusOk;
}

Status FakeRegistry::Query(RegistryKey key, const std::string& name, void* buffer, unsigned int* size) {
  Key* const opened = KeyOf(key);
  if (opened == nullptr) return StatusInvalidHandle;
  NoteCall(m_log, "QueryValue", {opened->path, name, std::to_string(*size)});
  const auto found = opened->values.find(name);
  if (found == opened->values.end()) return StatusFileNotFound;
  if (found->second.failure != StatusOk) {
    // A failed query leaves no text in the buffer.
    if (buffer != nullptr) std::memset(buffer, '*', *size);
    return found->second.failure;
  }
  const std::string& bytes = found->second.bytes;
  const unsigned int room = *size;
  *size = static_cast<unsigned int>(bytes.size());
  if (buffer == nullptr) return StatusOk;
  if (room < *size) return StatusMoreData;
  std::memcpy(buffer, bytes.data(), bytes.size());
  return StatusOk;
}

Status FakeRegistry::Enumerate(RegistryKey key, unsigned int index, RX::UniChar* name, unsigned int* length) {
  Key* const opened = KeyOf(key);
  if (opened == nullptr) return StatusInvalidHandle;
  NoteCall(m_log, "EnumerateKey", {opened->path, std::to_string(index), std::to_string(*length)});
  const auto failure = opened->enumerationFailures.find(index);
  if (failure != opened->enumerationFailures.end()) return failure->second;
  if (index >= opened->children.size()) return StatusNoMoreItems;
  const WideText text = Widen(opened->children[index]->name);
  if (*length <= text.size()) return StatusMoreData;
  std::memcpy(name, text.c_str(), (text.size() + 1) * sizeof(RX::UniChar));
  *length = static_cast<unsigned int>(text.size());
  return StatusOk;
}

Status FakeRegistry::Close(RegistryKey key) {
  Key* const opened = KeyOf(key);
  if (opened == nullptr) return StatusInvalidHandle;
  NoteCall(m_log, "CloseKey", {opened->path});
  m_openKeys.erase(std::remove_if(m_openKeys.begin(), m_openKeys.end(),
                                  [&](const auto& candidate) { return candidate.get() == key; }),
                   m_openKeys.end());
  return StatusOk;
}

}  // namespace tests
