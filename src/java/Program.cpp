#include <torvan/java/Program.h>

#include <torvan/java/Failure.h>
#include <torvan/java/detail/Utf.h>

#include <system_error>
#include <utility>

#include "java/PathText.h"
#include "java/processes/Launch.h"
#include "java/processes/Surroundings.h"

namespace torvan::java {

namespace {

constexpr const char* HoldsNul = " holds a NUL, which no program can take";

std::string Quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

// Texts reach the program ended by a NUL, and Java as UTF-8 or the system's own UTF-16.
std::string Checked(const char* what, std::string_view text) {
  if (text.find('\0') != std::string_view::npos) throw Misuse("java/Program", __LINE__, std::string(what) + HoldsNul);
  try {
    detail::ToUtf16(text);
  } catch (const Misuse& invalid) {
    throw Misuse("java/Program", __LINE__, std::string(what) + ": " + invalid.what());
  }
  return std::string(text);
}

std::filesystem::path CheckedPath(const char* what, const std::filesystem::path& path) {
  if (path.empty()) throw Misuse("java/Program", __LINE__, std::string(what) + " is empty");
  if (path.native().find(std::filesystem::path::value_type()) != std::filesystem::path::string_type::npos) {
    throw Misuse("java/Program", __LINE__, std::string(what) + HoldsNul);
  }
  return path;
}

// The path made absolute with the folder that is current now.
std::filesystem::path Absolute(const char* what, const std::filesystem::path& path) {
  std::error_code error;
  std::filesystem::path absolute = std::filesystem::absolute(CheckedPath(what, path), error);
  if (error) {
    const std::string given = std::string(what) + ", " + Quoted(detail::ToText(path));
    throw Misuse("java/Program", __LINE__,
                 given + ", is relative and there is no current folder: " + detail::ReasonOf(error));
  }
  return absolute;
}

std::string CheckedVariable(std::string_view name) {
  if (name.empty() || name.find('=') != std::string_view::npos) {
    throw Misuse("java/Program", __LINE__, Quoted(name) + " is no name of an environment variable");
  }
  return Checked("the name of an environment variable", name);
}

template <class Function>
Function CheckedFunction(const char* what, Function function) {
  if (!function) throw Misuse("java/Program", __LINE__, std::string(what) + " is empty");
  return function;
}

}  // namespace

Program Program::Jar(const std::filesystem::path& jar) {
  Program program;
  // An absolute path begins neither with "-" nor with "@", which would mean something else to Java.
  program.m_settings.jar = Absolute("the jar", jar);
  return program;
}

Program Program::MainClass(std::string_view name) {
  if (name.empty() || name[0] == '-' || name[0] == '@') {
    throw Misuse("java/Program", __LINE__, Quoted(name) + " is no name of a class");
  }
  Program program;
  program.m_settings.mainClass = Checked("the main class", name);
  return program;
}

Program& Program::Runtime(const std::filesystem::path& home) {
  m_settings.home = Absolute("the runtime's home", home);
  m_settings.runtime.reset();
  return *this;
}

Program& Program::Runtime(const java::Runtime& runtime) {
  m_settings.runtime = runtime;
  return *this;
}

Program& Program::ClassPath(const std::vector<std::filesystem::path>& parts) {
  std::vector<std::filesystem::path> checked = m_settings.classPath;
  for (const std::filesystem::path& part : parts) {
    checked.push_back(Absolute("a part of the class path", part));
    if (checked.back().native().find(detail::PathListSeparator) != std::filesystem::path::string_type::npos) {
      throw Misuse("java/Program", __LINE__,
                   Quoted(detail::ToText(part)) + " would be several parts of a class path: pass each by itself");
    }
  }
  m_settings.classPath = std::move(checked);
  return *this;
}

Program& Program::Option(std::string_view option) {
  if (option.size() < 2 || option[0] != '-') {
    throw Misuse("java/Program", __LINE__,
                 Quoted(option) + " is no option: it begins with \"-\", and its value follows after \"=\"");
  }
  m_settings.options.push_back(Checked("an option", option));
  return *this;
}

Program& Program::Property(std::string_view name, std::string_view value) {
  if (name.empty() || name.find('=') != std::string_view::npos) {
    throw Misuse("java/Program", __LINE__, Quoted(name) + " is no name of a system property");
  }
  m_settings.options.push_back("-D" + Checked("the name of a system property", name) + "=" +
                               Checked("the value of a system property", value));
  return *this;
}

Program& Program::Arguments(const std::vector<std::string>& arguments) {
  for (const std::string& argument : arguments) Checked("an argument", argument);
  m_settings.arguments.insert(m_settings.arguments.end(), arguments.begin(), arguments.end());
  return *this;
}

Program& Program::Environment(std::string_view name, std::string_view value) {
  m_settings.environment.push_back({CheckedVariable(name), Checked("the value of an environment variable", value)});
  return *this;
}

Program& Program::RemoveEnvironment(std::string_view name) {
  m_settings.environment.push_back({CheckedVariable(name), std::nullopt});
  return *this;
}

Program& Program::ClearEnvironment() {
  m_settings.clearEnvironment = true;
  m_settings.environment.clear();
  return *this;
}

Program& Program::Folder(const std::filesystem::path& folder) {
  m_settings.folder = CheckedPath("the folder", folder);
  return *this;
}

Program& Program::Input(std::string_view text) {
  m_settings.input = {detail::InputSettings::Kind::Text, std::string(text), {}, {}};
  return *this;
}

Program& Program::InputFile(const std::filesystem::path& file) {
  m_settings.input = {detail::InputSettings::Kind::File, {}, CheckedPath("the input file", file), {}};
  return *this;
}

Program& Program::InputFrom(std::function<std::optional<std::string>()> next) {
  m_settings.input = {detail::InputSettings::Kind::Function,
                      {},
                      {},
                      CheckedFunction("the function that returns input", std::move(next))};
  return *this;
}

Program& Program::KeepInputOpen() {
  m_settings.keepInputOpen = true;
  return *this;
}

Program& Program::OnOutputLine(std::function<void(std::string_view)> onLine) {
  m_settings.output = {
      detail::OutputSettings::Kind::Lines, {}, CheckedFunction("the function for lines of output", std::move(onLine))};
  return *this;
}

Program& Program::InheritOutput() {
  m_settings.output = {detail::OutputSettings::Kind::Inherit, {}, {}};
  return *this;
}

Program& Program::OutputFile(const std::filesystem::path& file) {
  m_settings.output = {detail::OutputSettings::Kind::File, CheckedPath("the output file", file), {}};
  return *this;
}

Program& Program::OnErrorLine(std::function<void(std::string_view)> onLine) {
  m_settings.error = {detail::OutputSettings::Kind::Lines,
                      {},
                      CheckedFunction("the function for lines of error output", std::move(onLine))};
  return *this;
}

Program& Program::InheritError() {
  m_settings.error = {detail::OutputSettings::Kind::Inherit, {}, {}};
  return *this;
}

Program& Program::ErrorFile(const std::filesystem::path& file) {
  m_settings.error = {detail::OutputSettings::Kind::File, CheckedPath("the error file", file), {}};
  return *this;
}

Program& Program::TimeLimit(std::chrono::milliseconds limit) {
  if (limit.count() <= 0) throw Misuse("java/Program", __LINE__, "a time limit is more than 0 milliseconds");
  m_settings.timeLimit = limit;
  return *this;
}

std::uint32_t Program::Detached() const { return detail::StartDetached(m_settings); }

}  // namespace torvan::java
