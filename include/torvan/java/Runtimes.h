// The Java runtimes that are installed on this machine.
#pragma once

#include <torvan/java/Runtime.h>
#include <torvan/java/VersionRange.h>

#include <filesystem>
#include <vector>

namespace torvan::java {

// What a search found. Each home is in one of the lists, once.
struct Runtimes {
  std::vector<Runtime> found;  // the one of JAVA_HOME first, then the newest first
  std::vector<RefusedRuntime> refused;
};

// Searches for Java runtimes wherever they are usually installed.
// These are JAVA_HOME, JDK_HOME, the first `java` of the PATH, the registry, and the usual folders of the system and of
// this user. Nothing is executed: files and keys are read. What cannot be read is refused or ignored; the only
// exception is std::bad_alloc. Takes a few milliseconds, and searches anew each time. May be called on any thread while
// no other one changes the environment.
Runtimes FindRuntimes();

// Searches one folder only: the folder itself and those in it.
// For hosts that bring a runtime along. A relative path is one below the host's current folder.
Runtimes FindRuntimes(const std::filesystem::path& folder);

// The runtime in this home.
// Throws StartFailure with the reason when there is none that this process can load.
Runtime RuntimeIn(const std::filesystem::path& home);

// The runtime to take: that of JAVA_HOME if its version fits, else the newest one that does.
// Throws StartFailure when there is none; its text lists what was found, what was refused and why, and where it
// searched.
Runtime ChooseRuntime(const VersionRange& versions = {});

}  // namespace torvan::java
