// Java runtimes in the registry and the files of a fake system.
#pragma once

#include <string>

#include "fakes/FakeSystem.h"
#include "jvmlauncher/Access.h"

namespace tests {

constexpr const char* Source64 = "Software\\JavaSoft\\Java Runtime Environment";
constexpr const char* Source32 = "Software\\Wow6432Node\\JavaSoft\\Java Runtime Environment";

// The files of a runtime with this home folder: its library and programs.
inline std::string LibraryIn(const std::string& home) { return home + OnThisSystem("\\jvm.dll", "/libjvm.so"); }
inline std::string ConsoleProgramIn(const std::string& home) {
  return home + OnThisSystem("\\bin\\java.exe", "/bin/java");
}
inline std::string ProgramIn(const std::string& home) { return home + OnThisSystem("\\bin\\javaw.exe", "/bin/java"); }

inline std::string KeyOf(const char* source, const std::string& version) { return source + ("\\" + version); }

inline void Register(FakeSystem& system, const char* source, const std::string& version, const std::string& home) {
  system.SetValue(KeyOf(source, version), "JavaHome", home);
  system.SetValue(KeyOf(source, version), "RuntimeLib", LibraryIn(home));
}

// Registers a runtime whose files are there.
inline void Install(FakeSystem& system, const char* source, const std::string& version, const std::string& home) {
  Register(system, source, version, home);
  system.AddFile(LibraryIn(home));
  system.AddFile(ConsoleProgramIn(home));
}

}  // namespace tests
