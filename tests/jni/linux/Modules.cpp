#include "jni/Modules.h"

#include <dlfcn.h>
#include <unistd.h>

namespace tests {

std::string ProgramPath() {
  char path[4096] = {};
  const auto length = readlink("/proc/self/exe", path, sizeof(path) - 1);
  return std::string(path, length > 0 ? static_cast<std::size_t>(length) : 0);
}

bool IsLoaded(const WideText& path) {
  void* const module = dlopen(Narrow(path.c_str()).c_str(), RTLD_LAZY | RTLD_NOLOAD);
  if (module != nullptr) dlclose(module);
  return module != nullptr;
}

}  // namespace tests
