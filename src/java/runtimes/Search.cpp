#include "java/runtimes/Search.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "java/PathText.h"
#include "java/runtimes/Pattern.h"
#include "java/runtimes/Places.h"

namespace torvan::java::detail {
namespace {

namespace fs = std::filesystem;

constexpr const char* StrongestVariable = "JAVA_HOME";

std::string Joined(const std::vector<const char*>& texts) {
  std::string joined;
  for (const char* text : texts) joined += joined.empty() ? text : std::string(", ") + text;
  return joined;
}

std::vector<fs::path> FoldersOfPath(const std::string& variable) {
  std::vector<fs::path> folders;
  std::string part;
  bool isQuoted = false;
  for (std::size_t i = 0; i <= variable.size(); ++i) {
    const char unit = i < variable.size() ? variable[i] : PathListSeparator;
    if (unit == '"' && UsualPlaces().hasQuotes) {
      // A quote that is never closed does not count: it would hide all parts after it.
      isQuoted = !isQuoted && variable.find('"', i + 1) != std::string::npos;
    } else if (unit != PathListSeparator || isQuoted) {
      part += unit;
    } else {
      fs::path folder = ToPath(part);
      if (folder.is_absolute()) folders.push_back(std::move(folder));
      part.clear();
    }
  }
  return folders;
}

// The base with its variable replaced; nothing when that has no absolute value.
std::optional<std::string> BaseOf(const Machine& machine, const std::string& base) {
  if (base[0] != '$') return machine.Root() + base;
  const std::size_t end = std::min(base.find(UsualPlaces().folderSeparator), base.size());
  const std::optional<std::string> value = machine.Variable(base.substr(1, end - 1));
  if (!value || !ToPath(*value).is_absolute()) return std::nullopt;
  return *value + base.substr(end);
}

}  // namespace

void Search::LookEverywhere() {
  LookAtVariable(StrongestVariable);
  LookAtVariable("JDK_HOME");
  LookAlongPath();
  LookIntoRegistry();
  LookIntoUsualFolders();
}

void Search::LookAtVariable(const char* name) {
  const std::optional<std::string> home = m_machine.Variable(name);
  m_looked.push_back(std::string(name) + (home ? ": " + *home : " (not set)"));
  if (home) LookAtSetting(*home, name);
}

void Search::LookAlongPath() {
  for (const fs::path& folder : FoldersOfPath(m_machine.Variable("PATH").value_or(""))) {
    const fs::path program = folder / fs::path(UsualLayout().java).filename();
    if (!m_machine.IsProgram(program)) continue;
    m_looked.push_back("PATH: " + ToText(program));
    LookAtProgram(program);
    return;
  }
  m_looked.push_back("PATH (no java in it)");
}

// Once all links are followed, the program is in the folder "bin" of its home. A launcher of a version manager is
// elsewhere, and finds its runtime only when it is run.
void Search::LookAtProgram(const fs::path& program) {
  const Location real = m_machine.Locate(program);
  const fs::path home = HomeOf(m_machine, real.path.parent_path().parent_path());
  const fs::path layout = UsualLayout().java;
  const bool isInHome = real.path.filename() == layout.filename() &&
                        real.path.parent_path().filename() == layout.parent_path() &&
                        ReadHome(m_machine, home, {}).hasLibraryOrRelease;
  if (isInHome) return LookAt(home, "PATH");
  Refuse(program, "is a launcher and no link into a runtime; it is not executed to find out where it leads", "PATH");
}

void Search::LookIntoRegistry() {
  const Places& places = UsualPlaces();
  std::string keys;
  for (const RegistryPlaces& row : places.registry) keys += (keys.empty() ? "" : ", ") + Joined(row.patterns);
  if (!keys.empty()) m_looked.push_back("registry, " + Joined(places.registryRoots) + ": " + keys);

  const auto keysIn = [this](const std::string& key) { return m_machine.KeysIn(key); };
  for (const char* root : places.registryRoots) {
    for (const RegistryPlaces& row : places.registry) {
      for (const char* pattern : row.patterns) {
        for (const Expansion& match : Expand(root, pattern, '\\', keysIn)) {
          const std::optional<std::string> home = m_machine.RegisteredText(match.place, row.value);
          if (home && !home->empty()) LookAtSetting(*home, match.place);
        }
      }
    }
  }
}

void Search::LookIntoUsualFolders() {
  const Places& places = UsualPlaces();
  const auto foldersIn = [this](const std::string& folder) { return m_machine.FoldersIn(ToPath(folder)).names; };
  for (const FolderPlaces& row : places.folders) {
    const std::optional<std::string> base = BaseOf(m_machine, row.base);
    if (!base) continue;
    std::string looked = *base + ": " + Joined(row.patterns);
    // Several variables may have one value.
    if (std::find(m_looked.begin(), m_looked.end(), looked) != m_looked.end()) continue;
    m_looked.push_back(std::move(looked));
    for (const char* pattern : row.patterns) {
      for (const Expansion& match : Expand(*base, pattern, places.folderSeparator, foldersIn)) {
        Glance(ToPath(match.place), match.foundIn);
      }
    }
  }
}

void Search::LookInto(const fs::path& folder) {
  const Location real = m_machine.Locate(folder);
  if (real.path.empty()) return Refuse(folder, real.reason, ToText(folder));
  const std::string foundIn = ToText(real.path);
  Glance(real.path, foundIn);
  const Listing inner = m_machine.FoldersIn(real.path);
  for (const std::string& name : inner.names) Glance(real.path / ToPath(name), foundIn);
  if (!inner.reason.empty()) Refuse(real.path, inner.reason, foundIn);
}

void Search::LookAtSetting(const std::string& home, const std::string& foundIn) {
  const fs::path path = ToPath(home);
  if (!path.is_absolute()) return Refuse(path, "is not an absolute path", foundIn);
  LookAt(path, foundIn);
}

void Search::LookAt(const fs::path& path, const std::string& foundIn) {
  const Location real = m_machine.Locate(path);
  if (real.path.empty()) return Refuse(path, real.reason, foundIn);
  const fs::path home = HomeOf(m_machine, real.path);
  if (!m_machine.IsFolder(home)) return Refuse(home, "is not a folder", foundIn);
  Keep(home, ReadHome(m_machine, home, foundIn), foundIn);
}

void Search::Glance(const fs::path& folder, const std::string& foundIn) {
  const Location real = m_machine.Locate(folder);
  if (real.path.empty()) return;
  const fs::path home = HomeOf(m_machine, real.path);
  HomeReading reading = ReadHome(m_machine, home, foundIn);
  if (reading.hasProgram || reading.hasLibraryOrRelease) Keep(home, std::move(reading), foundIn);
}

void Search::Keep(const fs::path& home, HomeReading reading, const std::string& foundIn) {
  if (!reading.runtime) return Refuse(home, std::move(reading.reason), foundIn);
  if (m_seen.insert(ToText(home)).second) m_runtimes.found.push_back(*std::move(reading.runtime));
}

void Search::Refuse(const fs::path& home, std::string reason, const std::string& foundIn) {
  if (m_seen.insert(ToText(home)).second) m_runtimes.refused.emplace_back(home, std::move(reason), foundIn);
}

Runtimes Search::Result() const {
  Runtimes sorted = m_runtimes;
  std::stable_sort(sorted.found.begin(), sorted.found.end(), [](const Runtime& a, const Runtime& b) {
    const bool isFirstA = a.FoundIn() == StrongestVariable;
    const bool isFirstB = b.FoundIn() == StrongestVariable;
    return isFirstA != isFirstB ? isFirstA : a.Version() > b.Version();
  });
  return sorted;
}

}  // namespace torvan::java::detail
