#include "java/VmLibrary.h"

#include <torvan/java/Failure.h>

#include "java/PathText.h"

namespace torvan::java::detail {

namespace {

bool TakeSymbols(void* module, VmLibrary& library) {
  library.create = reinterpret_cast<VmLibrary::CreateFunction>(SymbolOf(module, "JNI_CreateJavaVM"));
  library.list = reinterpret_cast<VmLibrary::ListFunction>(SymbolOf(module, "JNI_GetCreatedJavaVMs"));
  return library.create != nullptr && library.list != nullptr;
}

}  // namespace

VmLibrary LoadVmLibrary(const std::filesystem::path& path) {
  const std::string name = ToText(path);
  std::string reason;
  void* const module = LoadLibraryAt(path, reason);
  if (module == nullptr) {
    throw StartFailure("java/VmLibrary", __LINE__, "The Java VM library " + name + " cannot be loaded: " + reason);
  }
  VmLibrary library{path};
  if (!TakeSymbols(module, library)) {
    throw StartFailure("java/VmLibrary", __LINE__, name + " is no Java VM library: it has no JNI_CreateJavaVM");
  }
  return library;
}

VmLibrary LoadedVmLibrary() {
  VmLibrary library;
  void* const module = FindLoadedVm(library.path);
  if (module == nullptr || !TakeSymbols(module, library)) return {};
  return library;
}

}  // namespace torvan::java::detail
