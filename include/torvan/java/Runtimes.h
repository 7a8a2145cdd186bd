// The Java runtimes that are installed on this machine.
#pragma once

#include <torvan/java/Runtime.h>
#include <torvan/java/VersionRange.h>

#include <filesystem>
#include <vector>

namespace torvan::java {

// What a search came upon. Each home is in one of the lists, and there once.
struct Runtimes {
  std::vector<Runtime> found;  // the one of JAVA_HOME first, then the newest first
  std::vector<RefusedRuntime> refused;
};

// Looks for Java runtimes wherever they are usually installed.
// These are JAVA_HOME, JDK_HOME, the first `java` of the PATH, the registry, and the usual folders of the system and of
// this user. Nothing is executed: files and keys are read. What cannot be read is refused or not there; the only
// exception is std::bad_alloc. Takes a few milliseconds, and looks anew each time. May be called from any thread, while
// no other one changes the environment.
Runtimes FindRuntimes();

// Looks in one folder only: at the folder itself and at those in it.
// For hosts that bring a runtime along. A relative path is one below the host's current folder.
Runtimes FindRuntimes(const std::filesystem::path& folder);

// The runtime in this home.
// Throws StartFailure with the reason when there is none that this process can load.
Runtime RuntimeIn(const std::filesystem::path& home);

// The runtime to take: that of JAVA_HOME if its version will do, else the newest one that will.
// Throws StartFailure when there is none; its text lists what was found, what was refused and why, and where was
// looked.
Runtime ChooseRuntime(const VersionRange& versions = {});

}  // namespace torvan::java
