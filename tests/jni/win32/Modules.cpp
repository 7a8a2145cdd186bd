#include "jni/Modules.h"

#include <windows.h>

namespace tests {

std::string ProgramPath() {
  wchar_t path[1024] = {};
  GetModuleFileNameW(nullptr, path, 1024);
  return Narrow(path);
}

bool IsLoaded(const WideText& path) { return GetModuleHandleW(path.c_str()) != nullptr; }

}  // namespace tests
