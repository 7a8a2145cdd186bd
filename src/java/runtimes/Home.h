// The home of a Java runtime.
#pragma once

#include <torvan/java/Runtime.h>

#include <filesystem>
#include <optional>
#include <string>

#include "java/runtimes/Machine.h"

namespace torvan::java::detail {

// What a folder is.
struct HomeReading {
  std::optional<Runtime> runtime;
  std::string reason;        // why it is none
  bool hasProgram;           // Java's
  bool hasLibraryOrRelease;  // what every runtime has
};

// The home that a folder belongs to: the kit, for the runtime inside a kit of version 8, which has no release file.
std::filesystem::path HomeOf(const Machine& machine, const std::filesystem::path& folder);

// Reads a home, and tells of the runtime that it was found in `foundIn`.
HomeReading ReadHome(const Machine& machine, const std::filesystem::path& home, const std::string& foundIn);

}  // namespace torvan::java::detail
