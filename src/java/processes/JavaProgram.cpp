#include "java/processes/JavaProgram.h"

#include <torvan/java/Failure.h>
#include <torvan/java/Runtimes.h>

#include <string>
#include <system_error>

#include "java/PathText.h"
#include "java/processes/Surroundings.h"

namespace torvan::java::detail {

namespace fs = std::filesystem;

namespace {

bool IsFile(const fs::path& path) {
  std::error_code error;
  return fs::is_regular_file(path, error);
}

}  // namespace

fs::path FindJava(const ProgramSettings& settings) {
  const fs::path home = settings.home.empty() ? ChooseRuntime().Home() : settings.home;
  // A version 8 kit has a runtime in it.
  for (const fs::path& bin : {home / "bin", home / "jre" / "bin"}) {
    if (IsFile(bin / JavaProgramName)) return bin / JavaProgramName;
  }
  throw StartFailure("java/processes/JavaProgram", __LINE__,
                     "No bin/" + std::string(JavaProgramName) + " in \"" + ToText(home) + "\"");
}

bool ReadsArgumentFiles(const fs::path& java) {
  // Java 8 and earlier have their own classes in rt.jar.
  const fs::path home = java.parent_path().parent_path();
  return !IsFile(home / "lib" / "rt.jar") && !IsFile(home / "jre" / "lib" / "rt.jar");
}

}  // namespace torvan::java::detail
