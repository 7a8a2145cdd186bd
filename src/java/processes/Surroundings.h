// What else is needed of the system to run processes. One source per system.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <vector>

#include "java/processes/StartPlan.h"

namespace torvan::java::detail {

// The name of the program of a runtime's "bin" folder.
extern const char* const JavaProgramName;

// Checked UTF-8 as the system has it.
inline NativeText ToNative(std::string_view text) { return ToPath(std::string(text)).native(); }

// A system's error number in words, as UTF-8.
std::string ReasonOf(unsigned long error);
// The same for an error of the standard library, whose own words may be in the system's code page.
inline std::string ReasonOf(const std::error_code& error) {
  const bool isOfSystem = error.category() == std::system_category();
  return isOfSystem ? ReasonOf(static_cast<unsigned long>(error.value())) : error.message();
}

unsigned long OwnProcessId() noexcept;

// "NAME=value", as they are now.
std::vector<NativeText> OwnEnvironment();
// Tells whether two variables are the same to the system.
bool IsSameVariable(const NativeText& one, const NativeText& other);
// Adds what a Java program needs, except where `changes`, which the host has made, say otherwise.
void CompleteEnvironment(std::vector<NativeText>& environment, const std::vector<EnvironmentChange>& changes);
// An argument as java reads it from an argument file. Throws a Misuse for text that it cannot read.
std::string ToArgumentFileBytes(const NativeText& argument);

// A thread that the host's signals never run on.
std::thread StartQuietThread(std::function<void()> run);

// A file that removes itself. On Linux only this user can read it; on Windows it has the rights of its folder.
class TemporaryFile {
 public:
  // Throws a StartFailure that names the file and the system's reason.
  explicit TemporaryFile(const std::string& bytes);
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  // Absolute.
  const NativeText& Path() const noexcept { return m_path; }

 private:
  // Makes it under a new name. Returns the system's error, or 0; after an error there is no file.
  int Write(const std::string& bytes) noexcept;

  NativeText m_path;
};

}  // namespace torvan::java::detail
