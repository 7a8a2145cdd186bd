// A Java runtime whose programs are the launch probe.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tests {

void SetEnvironment(const char* name, const std::string& value);
void UnsetEnvironment(const char* name);

// Adds a Java runtime to those that this process sees, while the object lives. On Windows it is the only one.
// On Windows a key of this test takes the place of HKEY_LOCAL_MACHINE, so that nothing installed is read or changed;
// elsewhere JAVA_HOME names the runtime.
class ProbeRuntime {
 public:
  // The home folder has a space in its path.
  ProbeRuntime();
  ~ProbeRuntime();
  ProbeRuntime(const ProbeRuntime&) = delete;
  ProbeRuntime& operator=(const ProbeRuntime&) = delete;

  static constexpr const char* Version = "99.1";

  const std::filesystem::path& Folder() const { return m_folder; }
  std::filesystem::path Home() const { return m_folder / "jre 99"; }
  // The program that a launch starts.
  std::filesystem::path Program() const;

  // On Windows only: registers a runtime of another version at the same home, or no runtime at all from now on.
  void RegisterIn32BitView(const char* version);
  void UnregisterAll();
  // Undoes it.
  void RegisterAgain();

 private:
  // The names of the programs in the runtime's bin folder; a launch starts the last one.
  static std::vector<const char*> Programs();
  static std::filesystem::path ProbeProgram();
  static std::string ProcessName();
  // Registers the runtime for this process, and removes it again.
  void Install();
  void Uninstall();
  void Register(const wchar_t* source, const char* version);

  std::filesystem::path m_folder;
};

// The zero-ended texts of a file; waits some seconds for the file to appear.
std::vector<std::string> ReadReport(const std::filesystem::path& file);

}  // namespace tests
