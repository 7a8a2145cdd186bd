// From a program's settings to a process.
#pragma once

#include <cstdint>
#include <memory>

#include "java/processes/Child.h"
#include "java/processes/Surroundings.h"

namespace torvan::java::detail {

// A child and the argument file that it may need while it starts.
struct Launched {
  std::unique_ptr<TemporaryFile> arguments;
  std::unique_ptr<Child> child;
};

// Throws a Misuse for settings that do not fit together, and a StartFailure where the program cannot be started.
Launched Launch(const ProgramSettings& settings);
std::uint32_t StartDetached(const ProgramSettings& settings);

}  // namespace torvan::java::detail
