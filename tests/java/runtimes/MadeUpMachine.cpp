#include "java/runtimes/MadeUpMachine.h"

#include <filesystem>
#include <set>

namespace tests {

void MadeUpMachine::AddProgram(const std::string& name) {
  const std::string path = AddFile(name, "#!/bin/sh\necho executed >&2\nexit 1\n");
  // On Windows the name decides.
  if constexpr (!OnWindows) std::filesystem::permissions(path, std::filesystem::perms::owner_all);
}

std::string MadeUpMachine::AddRuntime(const std::string& home, const std::string& version, bool isJdk) {
  AddFile(home + "/release", "IMPLEMENTOR=\"Maker\"\nJAVA_VERSION=\"" + version + "\"\n");
  AddFile(home + "/" + LibraryFile, LibraryFor(OwnMachine));
  AddProgram(home + "/" + JavaFile);
  if (isJdk) AddProgram(home + "/" + CompilerFile);
  return Path(home);
}

std::optional<std::string> MadeUpMachine::Variable(const std::string& name) const {
  const auto found = m_variables.find(name);
  if (found == m_variables.end()) return std::nullopt;
  return found->second;
}

std::vector<std::string> MadeUpMachine::KeysIn(const std::string& key) const {
  std::set<std::string> names;
  const std::string front = key + '\\';
  for (const auto& entry : m_registry) {
    if (entry.first.compare(0, front.size(), front) != 0) continue;
    names.insert(entry.first.substr(front.size(), entry.first.find('\\', front.size()) - front.size()));
  }
  return {names.begin(), names.end()};
}

std::optional<std::string> MadeUpMachine::RegisteredText(const std::string& key, const std::string& value) const {
  const auto found = m_registry.find(key);
  if (found == m_registry.end() || found->second.count(value) == 0) return std::nullopt;
  return found->second.at(value);
}

std::vector<std::string> Lines(const Runtimes& runtimes) {
  std::vector<std::string> lines;
  for (const torvan::java::Runtime& runtime : runtimes.found) {
    lines.push_back(ToText(runtime.Home()) + " " + runtime.Version().ToString() + " " + runtime.FoundIn());
  }
  for (const torvan::java::RefusedRuntime& refused : runtimes.refused) {
    lines.push_back(ToText(refused.Home()) + ": " + refused.Reason() + " (" + refused.FoundIn() + ")");
  }
  return lines;
}

}  // namespace tests
