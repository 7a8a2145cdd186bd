#include "java/runtimes/Home.h"

#include <functional>
#include <utility>

#include "java/PathText.h"
#include "java/runtimes/BinaryHeader.h"
#include "java/runtimes/Places.h"
#include "java/runtimes/ReleaseFile.h"

namespace torvan::java::detail {
namespace {

namespace fs = std::filesystem;

constexpr const char* ReleaseName = "release";
constexpr std::size_t MostOfRelease = std::size_t{256} * 1024;  // real ones have up to 15 KB
constexpr const char* VmKinds[] = {"server", "client", "j9vm", "zero", "minimal"};

// The first place where a home may have its VM library that is wanted; empty when none is.
fs::path PlaceOfLibrary(const fs::path& home, const std::function<bool(const fs::path&)>& isWanted) {
  const Layout& layout = UsualLayout();
  for (const char* folder : layout.libraryFolders) {
    for (const char* kind : VmKinds) {
      fs::path place = home / folder / kind / layout.libraryName;
      if (isWanted(place)) return place;
    }
  }
  return {};
}

fs::path FindLibrary(const Machine& machine, const fs::path& home) {
  return PlaceOfLibrary(home, [&machine](const fs::path& place) { return machine.IsFile(place); });
}

std::string ReasonOfNoLibrary(const Machine& machine, const fs::path& home) {
  std::string hindrance;
  const fs::path hidden = PlaceOfLibrary(home, [&](const fs::path& place) {
    hindrance = machine.Hindrance(place);
    return !hindrance.empty();
  });
  if (!hidden.empty()) return "its VM library cannot be reached: " + ToText(hidden) + ": " + hindrance;
  return "has no VM library such as " + ToText(PlaceOfLibrary({}, [](const fs::path&) { return true; }));
}

// The two below fill in what they read, and return why there is no runtime; an empty text when there can be one.

std::string ReadLibrary(const Machine& machine, const fs::path& home, const fs::path& library, std::string& cpuName) {
  if (library.empty()) return ReasonOfNoLibrary(machine, home);
  const Layout& layout = UsualLayout();
  const std::optional<std::string> head = machine.ReadFront(library, HeaderBytes);
  if (!head) return "its VM library cannot be read: " + ToText(library);
  const std::optional<std::string> cpu = layout.cpuOf(*head);
  if (!cpu) return "its VM library is no " + std::string(layout.format) + " library: " + ToText(library);
  if (*cpu != OwnCpu) return "its VM library is for " + *cpu + ", and this program for " + OwnCpu;
  cpuName = *cpu;
  return {};
}

std::string ReadReleaseOf(const Machine& machine, const fs::path& home, Release& release) {
  if (!machine.IsFile(home / ReleaseName)) {
    const std::string hindrance = machine.Hindrance(home / ReleaseName);
    return hindrance.empty() ? "has no release file, which would tell the version"
                             : "its release file cannot be reached: " + hindrance;
  }
  const std::optional<std::string> text = machine.ReadFront(home / ReleaseName, MostOfRelease);
  if (!text) return "its release file cannot be read";
  release = ReadRelease(*text);
  if (release.versionText.empty()) return "its release file tells no version";
  if (!release.libc.empty() && release.libc == UsualLayout().foreignLibc) {
    return "its release file tells that it is for the C library \"" + release.libc +
           "\", which this program does not use";
  }
  if (!release.version) return "its release file tells \"" + release.versionText + "\", which is not a version of Java";
  return {};
}

}  // namespace

fs::path HomeOf(const Machine& machine, const fs::path& folder) {
  // That of a kit has no release file; what an application brings along in such a folder has one.
  if (ToText(folder.filename()) != "jre" || machine.IsFile(folder / ReleaseName)) return folder;
  const fs::path outer = folder.parent_path();
  const bool isKit = machine.IsFile(outer / ReleaseName) || machine.IsFile(outer / UsualLayout().compiler);
  return isKit ? outer : folder;
}

HomeReading ReadHome(const Machine& machine, const fs::path& home, const std::string& foundIn) {
  fs::path library = FindLibrary(machine, home);
  fs::path java = home / UsualLayout().java;
  const bool hasJava = machine.IsFile(java);
  HomeReading reading{{}, {}, hasJava, !library.empty() || machine.IsFile(home / ReleaseName)};

  std::string cpu;
  Release release;
  reading.reason = ReadLibrary(machine, home, library, cpu);
  if (reading.reason.empty()) reading.reason = ReadReleaseOf(machine, home, release);
  if (!reading.reason.empty()) return reading;

  if (!hasJava) java.clear();
  const bool isJdk = machine.IsFile(home / UsualLayout().compiler);
  reading.runtime.emplace(RuntimeFacts{home, *std::move(release.version), std::move(release.vendor), std::move(cpu),
                                       isJdk, std::move(library), std::move(java), foundIn});
  return reading;
}

}  // namespace torvan::java::detail
