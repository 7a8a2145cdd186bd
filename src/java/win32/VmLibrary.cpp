#include "java/VmLibrary.h"

#include <torvan/java/detail/StringText.h>

#include <windows.h>

#include <vector>

#include "java/processes/Surroundings.h"

namespace torvan::java::detail {

const char* const VmLibraryPlaces[4] = {"bin/server/jvm.dll", "jre/bin/server/jvm.dll", "bin/client/jvm.dll",
                                        "jre/bin/client/jvm.dll"};

void* LoadLibraryAt(const std::filesystem::path& path, std::string& reason) {
  // The VM's own folder is searched for what the VM needs.
  HMODULE const module = LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (module == nullptr) {
    const DWORD error = GetLastError();
    reason = ReasonOf(error) + " (Windows error " + std::to_string(error) + ")";
  }
  return module;
}

void* SymbolOf(void* library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

void* FindLoadedVm(std::filesystem::path& path) {
  HMODULE const module = GetModuleHandleW(L"jvm.dll");
  if (module == nullptr) return nullptr;
  std::vector<wchar_t> buffer(32768);
  GetModuleFileNameW(module, buffer.data(), static_cast<DWORD>(buffer.size()));
  path = buffer.data();
  return module;
}

std::string LibraryFileName(const std::string& name) { return name + ".dll"; }

std::optional<std::string> OptionText(const std::string& utf8, std::string& reason) {
  const std::u16string units = ToUtf16(utf8);
  if (units.empty() || GetACP() == CP_UTF8) return utf8;
  const auto wide = reinterpret_cast<const wchar_t*>(units.data());
  const int length = static_cast<int>(units.size());
  BOOL lacks = FALSE;
  std::string text(units.size() * 4, '\0');
  const int size = WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, wide, length, text.data(),
                                       static_cast<int>(text.size()), nullptr, &lacks);
  if (size <= 0 || lacks != FALSE) {
    reason = "has a character that the system's code page " + std::to_string(GetACP()) +
             ", in which Java takes its options, has not";
    return std::nullopt;
  }
  text.resize(static_cast<std::size_t>(size));
  return text;
}

}  // namespace torvan::java::detail
