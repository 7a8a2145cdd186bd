// A machine with its own environment and folders, for the search of Java runtimes.
#pragma once

#include <ThisSystem.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "java/PathText.h"
#include "java/runtimes/BinaryHeader.h"
#include "java/runtimes/Headers.h"
#include "java/runtimes/Machine.h"
#include "java/runtimes/Places.h"
#include "java/runtimes/Search.h"
#include "platform/TemporaryFolder.h"

namespace tests {

using torvan::java::Runtimes;
using torvan::java::detail::Listing;
using torvan::java::detail::Location;
using torvan::java::detail::Machine;
using torvan::java::detail::Search;
using torvan::java::detail::ThisMachine;
using torvan::java::detail::ToText;
using torvan::java::detail::UsualPlaces;

// The files of a runtime.
constexpr const char* JavaFile = OnThisSystem("bin/java.exe", "bin/java");
constexpr const char* CompilerFile = OnThisSystem("bin/javac.exe", "bin/javac");
constexpr const char* LibraryFile = OnThisSystem("bin/server/jvm.dll", "lib/server/libjvm.so");
constexpr const char* LibraryFileOf8 = OnThisSystem("jre/bin/server/jvm.dll", "jre/lib/amd64/server/libjvm.so");

// CPUs, by their numbers in the files of this system.
constexpr std::size_t OwnMachine = OnWindows ? 0x8664 : 62;
constexpr std::size_t ForeignMachine = OnWindows ? 0xAA64 : 183;
inline std::string LibraryFor(std::size_t machine) { return OnWindows ? PeHeader(machine) : ElfHeader(machine); }

// The variable with the user's folder.
constexpr const char* UserVariable = OnThisSystem("USERPROFILE", "HOME");

// Its files are real ones, in a folder that is removed with it; the usual folders are below that folder, too.
class MadeUpMachine : public Machine {
 public:
  // As the system writes it.
  std::string Path(const std::string& name = {}) const {
    std::string path = m_folder.Path(name);
    for (char& unit : path) {
      if (unit == '/') unit = UsualPlaces().folderSeparator;
    }
    return path;
  }
  std::string AddFile(const std::string& name, const std::string& text = {}) { return m_folder.AddFile(name, text); }
  // A program that may be run.
  void AddProgram(const std::string& name);
  // A valid runtime. Returns its home.
  std::string AddRuntime(const std::string& home, const std::string& version, bool isJdk = true);
  void Register(const std::string& key, const std::string& value, const std::string& text) {
    m_registry[key][value] = text;
  }
  void Set(const std::string& name, const std::string& value) { m_variables[name] = value; }

  std::string Root() const override { return Path(); }
  std::optional<std::string> Variable(const std::string& name) const override;
  Location Locate(const std::filesystem::path& path) const override { return m_real.Locate(path); }
  bool IsFolder(const std::filesystem::path& path) const override { return m_real.IsFolder(path); }
  bool IsFile(const std::filesystem::path& path) const override { return m_real.IsFile(path); }
  std::string Hindrance(const std::filesystem::path& path) const override { return m_real.Hindrance(path); }
  bool IsProgram(const std::filesystem::path& path) const override { return m_real.IsProgram(path); }
  Listing FoldersIn(const std::filesystem::path& folder) const override { return m_real.FoldersIn(folder); }
  std::optional<std::string> ReadFront(const std::filesystem::path& file, std::size_t bytes) const override {
    return m_real.ReadFront(file, bytes);
  }
  std::vector<std::string> KeysIn(const std::string& key) const override;
  std::optional<std::string> RegisteredText(const std::string& key, const std::string& value) const override;

 private:
  const Machine& m_real = ThisMachine();
  TemporaryFolder m_folder;
  std::map<std::string, std::string> m_variables;
  std::map<std::string, std::map<std::string, std::string>> m_registry;
};

// All that a search tells: "home version foundIn" and "home: reason (foundIn)", a line each.
std::vector<std::string> Lines(const Runtimes& runtimes);

inline Runtimes SearchOf(const Machine& machine) {
  Search search(machine);
  search.LookEverywhere();
  return search.Result();
}

}  // namespace tests
