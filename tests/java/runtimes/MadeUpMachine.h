// A machine with its own environment and folders, for the search of Java runtimes.
#pragma once

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

namespace torvan::java::detail {

// How the files of a runtime differ between systems.
#ifdef _WIN32
constexpr const char* JavaFile = "bin/java.exe";
constexpr const char* CompilerFile = "bin/javac.exe";
constexpr const char* LibraryFile = "bin/server/jvm.dll";
constexpr const char* LibraryFileOf8 = "jre/bin/server/jvm.dll";
inline std::string LibraryFor(std::size_t machine) { return PeHeader(machine); }
constexpr std::size_t OwnMachine = 0x8664;
constexpr std::size_t ForeignMachine = 0xAA64;
#else
constexpr const char* JavaFile = "bin/java";
constexpr const char* CompilerFile = "bin/javac";
constexpr const char* LibraryFile = "lib/server/libjvm.so";
constexpr const char* LibraryFileOf8 = "jre/lib/amd64/server/libjvm.so";
inline std::string LibraryFor(std::size_t machine) { return ElfHeader(machine); }
constexpr std::size_t OwnMachine = 62;
constexpr std::size_t ForeignMachine = 183;
#endif

// Files and links are real ones, in a folder that goes with it; usual folders are below that folder, too.
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
  // A runtime that nothing is wrong with. Returns its home.
  std::string AddRuntime(const std::string& home, const std::string& version, bool isJdk = true);
  void Link(const std::string& name, const std::string& target);
  void Set(const std::string& name, const std::string& value) { m_variables[name] = value; }

  std::string Root() const override { return Path(); }
  std::optional<std::string> Variable(const std::string& name) const override;
  Location Locate(const std::filesystem::path& path) const override { return m_real.Locate(path); }
  bool IsFolder(const std::filesystem::path& path) const override { return m_real.IsFolder(path); }
  bool IsFile(const std::filesystem::path& path) const override { return m_real.IsFile(path); }
  bool IsProgram(const std::filesystem::path& path) const override { return m_real.IsProgram(path); }
  std::vector<std::string> FoldersIn(const std::filesystem::path& folder) const override {
    return m_real.FoldersIn(folder);
  }
  std::optional<std::string> ReadFront(const std::filesystem::path& file, std::size_t bytes) const override {
    return m_real.ReadFront(file, bytes);
  }
  std::vector<std::string> KeysIn(const std::string&) const override { return {}; }
  std::optional<std::string> RegisteredText(const std::string&, const std::string&) const override {
    return std::nullopt;
  }

 private:
  const Machine& m_real = ThisMachine();
  tests::TemporaryFolder m_folder;
  std::map<std::string, std::string> m_variables;
};

// All that a search tells: "home version foundIn" and "home: reason (foundIn)", a line each.
std::vector<std::string> Lines(const Runtimes& runtimes);

inline Runtimes SearchOf(const Machine& machine) {
  Search search(machine);
  search.LookEverywhere();
  return search.Result();
}

}  // namespace torvan::java::detail
