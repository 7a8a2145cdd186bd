// The library of a Java VM, and what the system says about it.
#pragma once

#include <torvan/jni/JniTypes.h>

#include <filesystem>
#include <optional>
#include <string>

namespace torvan::java::detail {

// The entry points of a VM library.
struct VmLibrary {
  using CreateFunction = jint(JNICALL*)(JavaVM**, void**, void*);
  using ListFunction = jint(JNICALL*)(JavaVM**, jsize, jsize*);

  std::filesystem::path path;
  CreateFunction create = nullptr;
  ListFunction list = nullptr;
};

// Loads a VM library, which stays loaded. Throws StartFailure with the system's own reason when it cannot be loaded,
// and when it is no VM library.
VmLibrary LoadVmLibrary(const std::filesystem::path& path);

// The VM library that this process has loaded. Its functions are null when there is none.
VmLibrary LoadedVmLibrary();

// The system's part.

// Loads a library; on failure returns null and the system's reason.
void* LoadLibraryAt(const std::filesystem::path& path, std::string& reason);
void* SymbolOf(void* library, const char* name);
// The library of that name if it is loaded, else null.
void* FindLoadedVm(std::filesystem::path& path);

// Where the library is below the home folder of a runtime, the likeliest place first.
extern const char* const VmLibraryPlaces[4];

// The text as the VM takes its options: in the system's own encoding. When that lacks a character, returns nothing and
// the reason, which goes on after "The option -Da=b ". Throws Misuse where the text has to be converted and is no
// UTF-8.
std::optional<std::string> OptionText(const std::string& utf8, std::string& reason);

// The file name of a library, "libjdwp.so" or "jdwp.dll".
std::string LibraryFileName(const std::string& name);

}  // namespace torvan::java::detail
