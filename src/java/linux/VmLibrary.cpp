#include "java/VmLibrary.h"

#include <dlfcn.h>
#include <langinfo.h>
#include <locale.h>

#include <algorithm>
#include <iterator>
#include <string_view>

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

namespace {

// Java gets these as texts, which the VM decodes; it uses the bytes of others, such as a native agent's path, as they
// are.
bool IsForJava(const std::string& option) {
  constexpr const char* Beginnings[] = {"-D", "--", "-javaagent:"};
  return std::any_of(std::begin(Beginnings), std::end(Beginnings),
                     [&option](const char* beginning) { return option.rfind(beginning, 0) == 0; });
}

// As the VM finds it out: the C library takes none of the environment's locales where one of them is not installed.
bool IsAsciiAllThatJavaTakes() {
  constexpr std::string_view Ascii = "ANSI_X3.4-1968";
  locale_t const locale = newlocale(LC_ALL_MASK, "", nullptr);
  if (locale == nullptr) return nl_langinfo(CODESET) == Ascii;
  const bool isAscii = nl_langinfo_l(CODESET, locale) == Ascii;
  freelocale(locale);
  return isAscii;
}

}  // namespace

std::optional<std::string> OptionText(const std::string& utf8, std::string& reason) {
  const bool isAscii = std::all_of(utf8.begin(), utf8.end(), [](char c) { return static_cast<signed char>(c) >= 0; });
  if (!isAscii && IsForJava(utf8) && IsAsciiAllThatJavaTakes()) {
    reason =
        "has a character that ASCII, the encoding of this process's locale, in which Java takes its options, has not: "
        "set LC_ALL to a locale in UTF-8, such as C.UTF-8";
    return std::nullopt;
  }
  return utf8;
}

}  // namespace torvan::java::detail
