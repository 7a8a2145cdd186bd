// All that a system needs to start a program.
#pragma once

#include <torvan/java/Failure.h>
#include <torvan/java/detail/ProgramSettings.h>

#include <filesystem>
#include <string>
#include <vector>

#include "java/PathText.h"

namespace torvan::java::detail {

// Text as the system takes it: bytes on Linux, UTF-16 on Windows.
using NativeText = std::filesystem::path::string_type;

enum class Stream { Input, Output, Error };
constexpr int StreamCount = 3;

// Where a standard stream of a program leads.
struct StreamPlan {
  enum class Kind { Nothing, Pipe, Inherit, File };

  Kind kind = Kind::Nothing;
  std::filesystem::path file;
};

struct StartPlan {
  std::filesystem::path program;
  bool readsArgumentFiles = true;
  std::vector<NativeText> arguments;    // after the program's name
  std::vector<NativeText> environment;  // "NAME=value"
  std::filesystem::path folder;         // empty: the current one
  StreamPlan streams[StreamCount];
};

// The arguments, or they with the environment, are more than the system passes to a program.
class TooLong : public StartFailure {
 public:
  using StartFailure::StartFailure;
};

// "Could not STEP for "PROGRAM": REASON", where the step names its file.
inline std::string CannotStart(const StartPlan& plan, const std::string& step, const std::string& reason) {
  return "Could not " + step + " for \"" + ToText(plan.program) + "\": " + reason;
}

}  // namespace torvan::java::detail
