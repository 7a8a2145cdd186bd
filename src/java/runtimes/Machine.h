// What the search for Java runtimes asks of the system.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace torvan::java::detail {

// Where a path leads.
struct Location {
  std::filesystem::path path;  // absolute and without links; empty where it leads nowhere
  std::string reason;          // the system's own, in that case
};

// One member, one question, no decision; texts in UTF-8. Nothing is executed and nothing is changed. What the system
// refuses to tell counts as absent. Any thread may ask; the environment must not be changed meanwhile.
class Machine {
 public:
  virtual ~Machine() = default;

  // What the usual folders that are absolute begin with: nothing, except on a test's made-up machine.
  virtual std::string Root() const = 0;
  // A variable of the environment; an empty one counts as not set.
  virtual std::optional<std::string> Variable(const std::string& name) const = 0;

  virtual Location Locate(const std::filesystem::path& path) const = 0;
  // Links are followed by all four.
  virtual bool IsFolder(const std::filesystem::path& path) const = 0;
  virtual bool IsFile(const std::filesystem::path& path) const = 0;
  // A file that this user may run.
  virtual bool IsProgram(const std::filesystem::path& path) const = 0;
  // The names of the folders in a folder, sorted.
  virtual std::vector<std::string> FoldersIn(const std::filesystem::path& folder) const = 0;
  // The front of a file: so many bytes of it, or all where it has less. Never waits, whatever the path leads to.
  virtual std::optional<std::string> ReadFront(const std::filesystem::path& file, std::size_t bytes) const = 0;

  // Of the registry, for keys such as "HKLM\SOFTWARE\JavaSoft"; where there is none, nothing. Names are sorted.
  virtual std::vector<std::string> KeysIn(const std::string& key) const = 0;
  virtual std::optional<std::string> RegisteredText(const std::string& key, const std::string& value) const = 0;
};

// The machine that this process runs on.
const Machine& ThisMachine();

}  // namespace torvan::java::detail
