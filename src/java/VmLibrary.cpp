#include "java/VmLibrary.h"

#include <torvan/java/Failure.h>

#include <fstream>
#include <utility>

#include "java/PathText.h"
#include "java/runtimes/BinaryHeader.h"

namespace torvan::java::detail {

namespace {

bool TakeSymbols(void* module, VmLibrary& library) {
  library.create = reinterpret_cast<VmLibrary::CreateFunction>(SymbolOf(module, "JNI_CreateJavaVM"));
  library.list = reinterpret_cast<VmLibrary::ListFunction>(SymbolOf(module, "JNI_GetCreatedJavaVMs"));
  return library.create != nullptr && library.list != nullptr;
}

// Why the system did not load a file: it is for another CPU, which some systems call missing, or what the system says.
std::string ReasonFor(const std::filesystem::path& path, std::string said) {
  std::string head(HeaderBytes, '\0');
  std::ifstream file(path, std::ios::binary);
  file.read(head.data(), static_cast<std::streamsize>(head.size()));
  head.resize(static_cast<std::size_t>(file.gcount()));
  auto cpu = CpuOfElf(head);
  if (!cpu.has_value()) cpu = CpuOfPe(head);
  if (!cpu.has_value() || *cpu == OwnCpu) return said;
  return "it is for " + *cpu + ", and this program for " + OwnCpu;
}

}  // namespace

VmLibrary LoadVmLibrary(const std::filesystem::path& path) {
  const std::string name = ToText(path);
  std::string reason;
  void* const module = LoadLibraryAt(path, reason);
  const std::string what = "The Java VM library " + name + " cannot be loaded: ";
  if (module == nullptr) throw StartFailure("java/VmLibrary", __LINE__, what + ReasonFor(path, std::move(reason)));
  VmLibrary library{path};
  if (!TakeSymbols(module, library)) {
    const char* const missing = library.create == nullptr ? "JNI_CreateJavaVM" : "JNI_GetCreatedJavaVMs";
    throw StartFailure("java/VmLibrary", __LINE__, name + " is no Java VM library: it has no " + missing);
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
