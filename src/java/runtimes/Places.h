// Where each system has its Java runtimes, and how one is laid out there. Paths are written as the system writes them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace torvan::java::detail {

// Folders below a base. A part of a pattern with a * matches every folder of such a name.
struct FolderPlaces {
  const char* base;  // "/usr", or one that begins with a variable: "$HOME"; without a value there is nothing to look at
  std::vector<const char*> patterns;
};

// Keys of the registry whose value is the home of a runtime. Patterns as for folders.
struct RegistryPlaces {
  const char* value;
  std::vector<const char*> patterns;
};

struct Places {
  bool hasQuotes;  // in the variable PATH: around parts that hold its separator
  char folderSeparator;
  std::vector<const char*> registryRoots;  // what all registry patterns are below
  std::vector<RegistryPlaces> registry;
  std::vector<FolderPlaces> folders;
};

// Files of a home, by their path in it.
struct Layout {
  const char* java;
  const char* compiler;
  const char* libraryName;
  std::vector<const char*> libraryFolders;  // above the folder of the VM's kind; the first one counts
  const char* format;                       // of the library's file, for people
  std::optional<std::string> (*cpuOf)(std::string_view head);
  // The C library that this program does not use, as release files name it; empty on a system with only one.
  const char* foreignLibc;
};

const Places& UsualPlaces();
const Layout& UsualLayout();

}  // namespace torvan::java::detail
