// The java program that runs a Program.
#pragma once

#include <torvan/java/detail/ProgramSettings.h>

#include <filesystem>

namespace torvan::java::detail {

struct JavaProgram {
  std::filesystem::path file;
  bool readsArgumentFiles;  // version 9 and later do
};

// The java of the settings' runtime or home, or of the runtime that ChooseRuntime() returns. Throws a StartFailure as
// that does, and where there is none.
JavaProgram FindJava(const ProgramSettings& settings);

}  // namespace torvan::java::detail
