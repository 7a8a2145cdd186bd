#include "Paths.h"

#include <cstdlib>
#include <cstring>
#include <string_view>

#include "Windows.h"

namespace hotspot {

namespace {

constexpr std::string_view PropertiesWithPaths[] = {"-Djava.class.path=", "-Djava.library.path="};
constexpr std::string_view BootClassPath = "-Xbootclasspath/a:";

bool StartsWith(std::string_view text, std::string_view start) { return text.substr(0, start.size()) == start; }

std::string UnixPath(const std::string& path) {
  if (path.empty() || path[0] == '/') return path;
  const auto nameOf =
      FindFunction<char*(WINDOWS_ABI*)(const char16_t*)>(GetModuleHandleA("kernel32.dll"), "wine_get_unix_file_name");
  if (nameOf == nullptr) return path;
  std::vector<char16_t> wide(path.size() + 1);
  MultiByteToWideChar(Utf8CodePage, 0, path.c_str(), -1, wide.data(), static_cast<int>(wide.size()));
  char* const name = nameOf(wide.data());
  if (name == nullptr) return path;
  const std::string result = name;
  HeapFree(GetProcessHeap(), 0, name);
  return result;
}

std::string UnixPathList(const std::string& list) {
  std::string result;
  for (std::size_t start = 0;;) {
    const std::size_t end = list.find(';', start);
    result += UnixPath(list.substr(start, end - start));
    if (end == std::string::npos) return result;
    result += ':';
    start = end + 1;
  }
}

std::string_view PathPrefix(std::string_view option) {
  for (const std::string_view property : PropertiesWithPaths) {
    if (StartsWith(option, property)) return property;
  }
  return StartsWith(option, BootClassPath) ? BootClassPath : std::string_view();
}

void SetProperty(JNIEnv* env, const std::string& name, const std::string& value) {
  jclass system = env->FindClass("java/lang/System");
  jmethodID set =
      env->GetStaticMethodID(system, "setProperty", "(Ljava/lang/String;Ljava/lang/String;)Ljava/lang/String;");
  env->CallStaticObjectMethod(system, set, env->NewStringUTF(name.c_str()), env->NewStringUTF(value.c_str()));
  if (env->ExceptionCheck()) env->ExceptionClear();
}

std::string Utf8(const char16_t* units) {
  std::string text(
      static_cast<std::size_t>(WideCharToMultiByte(Utf8CodePage, 0, units, -1, nullptr, 0, nullptr, nullptr)), '\0');
  WideCharToMultiByte(Utf8CodePage, 0, units, -1, text.data(), static_cast<int>(text.size()), nullptr, nullptr);
  text.pop_back();
  return text;
}

}  // namespace

std::string WithUnixPaths(const char* option) {
  const std::string_view prefix = PathPrefix(option);
  return prefix.empty() ? option : std::string(prefix) + UnixPathList(option + prefix.size());
}

void ShowHostPaths(JNIEnv* env, const std::vector<JavaVMOption>& hostOptions) {
  env->PushLocalFrame(16);
  SetProperty(env, "path.separator", ";");
  for (const JavaVMOption& option : hostOptions) {
    if (option.optionString == nullptr) continue;
    for (const std::string_view property : PropertiesWithPaths) {
      if (!StartsWith(option.optionString, property)) continue;
      const std::string_view name = property.substr(2, property.size() - 3);
      SetProperty(env, std::string(name), option.optionString + property.size());
    }
  }
  env->PopLocalFrame(nullptr);
}

void TakeOverEnvironment() {
  char16_t* const all = GetEnvironmentStringsW();
  for (const char16_t* entry = all; *entry != 0; entry += std::char_traits<char16_t>::length(entry) + 1) {
    const std::string variable = Utf8(entry);
    const std::size_t sign = variable.find('=', 1);
    if (sign == std::string::npos) continue;
    const std::string name = variable.substr(0, sign);
    const bool hasFolders = name == "PATH" || name == "TEMP" || name == "TMP" || name == "HOME" || name[0] == '=';
    if (!hasFolders) setenv(name.c_str(), variable.c_str() + sign + 1, 1);
  }
  FreeEnvironmentStringsW(all);
}

}  // namespace hotspot
