#include "jvmlauncher/ProbeRuntime.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>

namespace tests {

namespace fs = std::filesystem;

void SetEnvironment(const char* name, const std::string& value) { setenv(name, value.c_str(), 1); }

void UnsetEnvironment(const char* name) { unsetenv(name); }

std::vector<const char*> ProbeRuntime::Programs() { return {"java"}; }

fs::path ProbeRuntime::ProbeProgram() { return fs::read_symlink("/proc/self/exe").parent_path() / "launch_probe"; }

std::string ProbeRuntime::ProcessName() { return std::to_string(getpid()); }

void ProbeRuntime::Install() {
  fs::create_directories(Home() / "lib/server");
  std::ofstream(Home() / "lib/server/libjvm.so").flush();
  std::ofstream(Home() / "release") << "JAVA_VERSION=\"" << Version << "\"\n";
  SetEnvironment("JAVA_HOME", Home());
}

void ProbeRuntime::Uninstall() { UnsetEnvironment("JAVA_HOME"); }

}  // namespace tests
