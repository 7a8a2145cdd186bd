// The java program that runs a Program.
#pragma once

#include <torvan/java/detail/ProgramSettings.h>

#include <filesystem>

namespace torvan::java::detail {

// The java of the settings' home, or of the runtime that ChooseRuntime() returns. Throws a StartFailure as that does,
// and where a home has none.
std::filesystem::path FindJava(const ProgramSettings& settings);

// Tells whether this java is version 9 or later, which reads argument files.
bool ReadsArgumentFiles(const std::filesystem::path& java);

}  // namespace torvan::java::detail
