// What the tests of Linux share.
#pragma once

#include <filesystem>
#include <iterator>
#include <string>

#include "platform/TemporaryFolder.h"

namespace tests {

// A fixture beside the test program.
inline std::string FixturePath(const std::string& name) {
  return (std::filesystem::read_symlink("/proc/self/exe").parent_path() / name).string();
}
inline std::string ModuleFixture() { return FixturePath("platform_fixture_module.so"); }
inline std::string ProcessFixture(const std::string& arguments) {
  return "\"" + FixturePath("platform_fixture_process") + "\" " + arguments;
}

inline int CountDescriptors() {
  return static_cast<int>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
}

// Makes a folder that looks like a Java runtime, or like a development kit.
inline void AddRuntime(const TemporaryFolder& folder, const std::string& name, const std::string& version, bool isKit,
                       const std::string& library = "lib/server/libjvm.so") {
  folder.AddFile(name + "/release", "JAVA_VERSION=\"" + version + "\"\n");
  folder.AddFile(name + "/" + library);
  if (isKit) folder.AddFile(name + "/bin/javac");
}

}  // namespace tests
