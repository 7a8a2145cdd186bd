// The settings of a VM as the options that it takes.
#pragma once

#include <torvan/java/VmSettings.h>

namespace torvan::java {

// Turns settings into option texts, and refuses what would make the VM end the process while it is created.
class VmOptions {
 public:
  // `library` is the VM's. Throws StartFailure that names the setting at fault.
  VmOptions(const VmSettings& settings, const std::filesystem::path& library);

  // The path of the library of the VM that is asked for. Throws StartFailure.
  static std::filesystem::path LibraryOf(const VmSettings& settings);

  // In UTF-8, in the order in which the VM gets them.
  const std::vector<std::string>& Texts() const noexcept { return m_texts; }

 private:
  void AddPaths(const VmSettings& settings);
  void AddAgents(const VmSettings& settings);
  void Check() const;

  std::filesystem::path m_home;  // empty when the library is not in a runtime
  bool m_hasModulePath;
  std::vector<std::string> m_texts;
};

}  // namespace torvan::java
