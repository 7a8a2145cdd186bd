// The registry of FakeSystem.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "fakes/CallLog.h"
#include "fakes/WideText.h"
#include "platform/System.h"

namespace tests {

using torvan::platform::Status;

// Keys below HKEY_LOCAL_MACHINE, and which of them are open. FakeSystem says what each member does.
class FakeRegistry {
 public:
  explicit FakeRegistry(CallLog& log);
  ~FakeRegistry();

  void AddKey(const std::string& key) { MakeKey(key); }
  void SetBytes(const std::string& key, const std::string& name, const std::string& bytes);
  void FailOpen(const std::string& key, Status status);
  void FailQuery(const std::string& key, const std::string& name, Status status);
  void FailEnumeration(const std::string& key, unsigned int index, Status status);
  std::vector<std::string> OpenKeys() const;

  torvan::platform::RegistryKey LocalMachine() const { return m_localMachine.get(); }
  Status Open(torvan::platform::RegistryKey root, const std::string& subKey, unsigned int access,
              torvan::platform::RegistryKey* key);
  Status Query(torvan::platform::RegistryKey key, const std::string& name, void* buffer, unsigned int* size);
  Status Enumerate(torvan::platform::RegistryKey key, unsigned int index, RX::UniChar* name, unsigned int* length);
  Status Close(torvan::platform::RegistryKey key);

 private:
  struct Key;
  struct OpenedKey;

  // The key at a path below another, or null when the script has none; `make` adds what is missing.
  Key* FindKey(Key& from, const std::string& path, bool make);
  Key& MakeKey(const std::string& path) { return *FindKey(*m_localMachine, path, true); }
  // The scripted key of an open handle. A handle that is not open fails the test and returns null.
  Key* KeyOf(torvan::platform::RegistryKey key) const;

  CallLog& m_log;
  std::unique_ptr<Key> m_localMachine;
  std::vector<std::unique_ptr<OpenedKey>> m_openKeys;
};

}  // namespace tests
