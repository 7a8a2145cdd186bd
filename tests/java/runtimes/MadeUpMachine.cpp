#include "java/runtimes/MadeUpMachine.h"

#include <filesystem>

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
