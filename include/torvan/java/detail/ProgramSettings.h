// What a Program is made of.
#pragma once

#include <torvan/java/Runtime.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace torvan::java::detail {

struct InputSettings {
  enum class Kind { Nothing, Text, File, Function };

  Kind kind = Kind::Nothing;
  std::string text;
  std::filesystem::path file;
  std::function<std::optional<std::string>()> next;
};

struct OutputSettings {
  enum class Kind { Capture, Lines, Inherit, File };

  Kind kind = Kind::Capture;
  std::filesystem::path file;
  std::function<void(std::string_view)> onLine;
};

struct EnvironmentChange {
  std::string name;
  std::optional<std::string> value;  // none: it is removed
};

struct ProgramSettings {
  std::filesystem::path jar;  // or, where it is empty:
  std::string mainClass;
  std::optional<java::Runtime> runtime;  // or a home; neither: the machine's own choice
  std::filesystem::path home;
  std::vector<std::filesystem::path> classPath;
  std::vector<std::string> options;  // and properties, in the order they came
  std::vector<std::string> arguments;

  bool clearEnvironment = false;               // before the changes
  std::vector<EnvironmentChange> environment;  // in the order they came
  std::filesystem::path folder;                // empty: the host's current one

  InputSettings input;
  bool keepInputOpen = false;
  OutputSettings output;
  OutputSettings error;
  std::optional<std::chrono::milliseconds> timeLimit;
};

}  // namespace torvan::java::detail
