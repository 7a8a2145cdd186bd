// The java program that runs a Program.
#pragma once

#include <torvan/java/detail/ProgramSettings.h>

#include <filesystem>

namespace torvan::java::detail {

struct JavaProgram {
  std::filesystem::path file;
  bool readsArgumentFiles;  // version 9 and later do
};

// The java of the settings' runtime or home; by default of the best runtime that has one, in the order of
// FindRuntimes(). Throws a StartFailure as ChooseRuntime() does, and where there is no java.
JavaProgram FindJava(const ProgramSettings& settings);

}  // namespace torvan::java::detail
