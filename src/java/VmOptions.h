// The settings of a VM as the options that it takes.
#pragma once

#include <torvan/java/VmSettings.h>

namespace torvan::java {

// Turns settings into option texts, and refuses what would make the VM end the process while it is created, and what
// Java could not read.
class VmOptions {
 public:
  // `library` is the VM's. Throws StartFailure that names the setting at fault.
  VmOptions(const VmSettings& settings, const std::filesystem::path& library);

  // The path of the library of the VM that is asked for. Throws StartFailure.
  static std::filesystem::path LibraryOf(const VmSettings& settings);

  // All of them in UTF-8, in the order of the settings.
  const std::vector<std::string>& Texts() const noexcept { return m_texts; }

  // Those that the VM gets, in the encoding in which it takes them.
  std::vector<std::string>& Encoded() noexcept { return m_encoded; }

  // The host's system properties, by name and value in UTF-8, that have characters which that encoding lacks. They can
  // be set once the VM runs.
  using Properties = std::vector<std::pair<std::string, std::string>>;
  const Properties& LateProperties() const noexcept { return m_lateProperties; }

 private:
  void AddPaths(const VmSettings& settings);
  void AddAgents(const VmSettings& settings);
  void Check() const;
  void Encode();

  std::filesystem::path m_home;  // empty when the library is not in a runtime
  bool m_hasModulePath;
  std::vector<std::string> m_texts;
  std::vector<std::string> m_encoded;
  Properties m_lateProperties;
};

}  // namespace torvan::java
