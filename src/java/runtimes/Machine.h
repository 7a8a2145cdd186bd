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

// What is in a place.
struct Listing {
  std::vector<std::string> names;  // sorted; those that the system told
  std::string reason;              // the system's own, where it did not tell all
};

// One member, one question, no decision; texts in UTF-8. Nothing is executed and nothing is changed. What the system
// refuses to tell counts as absent. Any thread may ask; the environment must not be changed meanwhile.
class Machine {
 public:
  virtual ~Machine() = default;

  // What is put before the usual folders that are absolute. Empty, except on a test's made-up machine.
  virtual std::string Root() const = 0;
  // Returns the value of an environment variable; an empty one counts as not set.
  virtual std::optional<std::string> Variable(const std::string& name) const = 0;

  virtual Location Locate(const std::filesystem::path& path) const = 0;
  // All that follow take links to where they lead.
  virtual bool IsFolder(const std::filesystem::path& path) const = 0;
  virtual bool IsFile(const std::filesystem::path& path) const = 0;
  // Why the system does not tell whether there is such a file or folder: "Permission denied". Empty where it tells.
  virtual std::string Hindrance(const std::filesystem::path& path) const = 0;
  // A file that this user may run.
  virtual bool IsProgram(const std::filesystem::path& path) const = 0;
  // Returns the names of the folders in a folder, sorted.
  virtual Listing FoldersIn(const std::filesystem::path& folder) const = 0;
  // Reads the first bytes of a file, or all of it when it has fewer. Never waits, whatever the path leads to.
  virtual std::optional<std::string> ReadFront(const std::filesystem::path& file, std::size_t bytes) const = 0;

  // Read the registry: the sorted names of the keys in a key such as "HKLM\SOFTWARE\JavaSoft", and a text in a key.
  // Return nothing on a system without a registry.
  virtual std::vector<std::string> KeysIn(const std::string& key) const = 0;
  virtual std::optional<std::string> RegisteredText(const std::string& key, const std::string& value) const = 0;
};

// The machine that this process runs on.
const Machine& ThisMachine();

}  // namespace torvan::java::detail
