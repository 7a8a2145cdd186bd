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

JavaProgram InRuntime(const Runtime& runtime) {
  if (runtime.Java().empty()) {
    const std::string place = "The runtime in \"" + ToText(runtime.Home()) + "\"";
    throw StartFailure("java/processes/JavaProgram", __LINE__,
                       place + " has no bin/" + JavaProgramName + ": it was cut down to its library");
  }
  constexpr int FirstWithArgumentFiles = 9;
  return {runtime.Java(), runtime.Version().Feature() >= FirstWithArgumentFiles};
}

// The first in the order of the choice that has the program. Where none has, ChooseRuntime() or what is made of its
// runtime says why.
Runtime BestWithProgram() {
  for (const Runtime& runtime : FindRuntimes().found) {
    if (!runtime.Java().empty()) return runtime;
  }
  return ChooseRuntime();
}

JavaProgram InHome(const fs::path& home) {
  // A version 8 kit has a runtime in it. Java 8 and earlier have their own classes in rt.jar.
  for (const fs::path& runtime : {home, home / "jre"}) {
    const fs::path file = runtime / "bin" / JavaProgramName;
    const bool isOld = IsFile(runtime / "lib" / "rt.jar") || IsFile(runtime / "jre" / "lib" / "rt.jar");
    if (IsFile(file)) return {file, !isOld};
  }
  throw StartFailure("java/processes/JavaProgram", __LINE__,
                     "No bin/" + std::string(JavaProgramName) + " in \"" + ToText(home) + "\"");
}

}  // namespace

JavaProgram FindJava(const ProgramSettings& settings) {
  if (settings.runtime) return InRuntime(*settings.runtime);
  return settings.home.empty() ? InRuntime(BestWithProgram()) : InHome(settings.home);
}

}  // namespace torvan::java::detail
