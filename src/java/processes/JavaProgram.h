// The java program that runs a Program.
#pragma once

#include <torvan/java/detail/ProgramSettings.h>

#include <filesystem>

namespace torvan::java::detail {

// The java of the settings' home; without one, JAVA_HOME's or the first of the PATH. Throws a StartFailure that says
// where it was looked for.
std::filesystem::path FindJava(const ProgramSettings& settings);

// Tells whether this java is version 9 or later, which reads argument files.
bool ReadsArgumentFiles(const std::filesystem::path& java);

}  // namespace torvan::java::detail
