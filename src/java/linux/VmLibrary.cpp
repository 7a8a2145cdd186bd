#include "java/VmLibrary.h"

#include <dlfcn.h>

namespace torvan::java::detail {

const char* const VmLibraryPlaces[4] = {"lib/server/libjvm.so", "jre/lib/amd64/server/libjvm.so",
                                        "lib/amd64/server/libjvm.so", "lib/client/libjvm.so"};

void* LoadLibraryAt(const std::filesystem::path& path, std::string& reason) {
  void* const module = dlopen(path.c_str(), RTLD_NOW);
  if (module == nullptr) {
    const char* const error = dlerror();
    reason = error != nullptr ? error : "unknown";
  }
  return module;
}

void* SymbolOf(void* library, const char* name) { return dlsym(library, name); }

void* FindLoadedVm(std::filesystem::path& path) {
  void* const module = dlopen("libjvm.so", RTLD_LAZY | RTLD_NOLOAD);
  Dl_info info{};
  if (module != nullptr && dladdr(dlsym(module, "JNI_CreateJavaVM"), &info) != 0) path = info.dli_fname;
  return module;
}

std::string LibraryFileName(const std::string& name) { return "lib" + name + ".so"; }

std::string OptionText(const std::string& utf8) { return utf8; }

}  // namespace torvan::java::detail
