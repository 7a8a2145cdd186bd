#include "java/processes/JavaProgram.h"

#include <torvan/java/Failure.h>

#include <cstddef>
#include <system_error>

#include "java/processes/Environment.h"
#include "java/processes/Surroundings.h"

namespace torvan::java::detail {

namespace fs = std::filesystem;

namespace {

bool IsFile(const fs::path& path) {
  std::error_code error;
  return fs::is_regular_file(path, error);
}

fs::path Variable(const char* name) {
  const NativeText prefix = ToNative(std::string(name) + "=");
  for (const NativeText& variable : OwnEnvironment()) {
    if (IsSameVariable(prefix, variable)) return variable.substr(prefix.size());
  }
  return {};
}

// A runtime, or a version 8 kit with a runtime in it.
fs::path JavaOf(const fs::path& home) {
  for (const fs::path& bin : {home / "bin", home / "jre" / "bin"}) {
    if (IsFile(bin / JavaProgramName)) return bin / JavaProgramName;
  }
  return {};
}

fs::path FirstOfThePath() {
  const NativeText path = Variable("PATH").native();
  for (std::size_t begin = 0; begin <= path.size();) {
    const std::size_t end = std::min(path.find(PathListSeparator, begin), path.size());
    const fs::path folder = path.substr(begin, end - begin);
    if (folder.is_absolute() && IsFile(folder / JavaProgramName)) return folder / JavaProgramName;
    begin = end + 1;
  }
  return {};
}

}  // namespace

fs::path FindJava(const ProgramSettings& settings) {
  const bool isGiven = !settings.home.empty();
  const fs::path home = isGiven ? settings.home : Variable("JAVA_HOME");
  fs::path java = home.is_absolute() ? JavaOf(home) : fs::path();
  if (java.empty() && !isGiven) java = FirstOfThePath();
  if (!java.empty()) return java;
  const std::string program = "bin/" + std::string(JavaProgramName);
  if (isGiven) {
    throw StartFailure("java/processes/JavaProgram", __LINE__, "No " + program + " in \"" + PathText(home) + "\"");
  }
  throw StartFailure("java/processes/JavaProgram", __LINE__,
                     home.empty() ? "No Java was found: JAVA_HOME is not set, and no folder of the PATH has " +
                                        std::string(JavaProgramName)
                                  : "No Java was found: no " + program + " in JAVA_HOME, which is \"" + PathText(home) +
                                        "\", and no folder of the PATH has " + JavaProgramName);
}

bool ReadsArgumentFiles(const fs::path& java) {
  // Java 8 and earlier have their own classes in rt.jar. A java in a folder of the PATH can be a link into its home.
  std::error_code error;
  const fs::path real = fs::canonical(java, error);
  const fs::path home = (error ? java : real).parent_path().parent_path();
  return !IsFile(home / "lib" / "rt.jar") && !IsFile(home / "jre" / "lib" / "rt.jar");
}

}  // namespace torvan::java::detail
