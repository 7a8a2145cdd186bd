#include "Arguments.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <shared_mutex>
#include <unordered_map>

namespace hotspot {

namespace {

std::shared_mutex s_lock;
std::unordered_map<jmethodID, std::vector<char>> s_methods;

// A reference to it stays good: methods are never forgotten.
const std::vector<char>& TypesOf(jmethodID method) {
  const std::shared_lock<std::shared_mutex> guard(s_lock);
  const auto found = s_methods.find(method);
  if (found != s_methods.end()) return found->second;
  std::fprintf(stderr, "jvm.dll: a method is called whose ID did not come from GetMethodID\n");
  std::abort();
}

jvalue ValueOf(char type, std::uint64_t slot) {
  jvalue value{};
  double number = 0;
  switch (type) {
    case 'Z':
      value.z = static_cast<std::uint32_t>(slot) != 0;
      break;
    case 'B':
      value.b = static_cast<jbyte>(slot);
      break;
    case 'C':
      value.c = static_cast<jchar>(slot);
      break;
    case 'S':
      value.s = static_cast<jshort>(slot);
      break;
    case 'I':
      value.i = static_cast<jint>(slot);
      break;
    case 'F':  // a float travels as a double
      std::memcpy(&number, &slot, sizeof(number));
      value.f = static_cast<jfloat>(number);
      break;
    default:
      value.j = static_cast<jlong>(slot);
      break;
  }
  return value;
}

}  // namespace

std::vector<char> ParameterTypes(const char* descriptor) {
  std::vector<char> types;
  for (const char* at = descriptor + 1; *at != '\0' && *at != ')'; ++at) {
    const bool isReference = *at == '[' || *at == 'L';
    types.push_back(isReference ? 'L' : *at);
    while (*at == '[') ++at;
    if (*at == 'L') at = std::strchr(at, ';');
  }
  return types;
}

void RememberMethod(jmethodID method, const char* descriptor) {
  if (method == nullptr) return;
  const std::unique_lock<std::shared_mutex> guard(s_lock);
  s_methods.try_emplace(method, ParameterTypes(descriptor));
}

Arguments::Arguments(jmethodID method, __builtin_ms_va_list list) {
  const std::vector<char>& types = TypesOf(method);
  m_values.reserve(types.size());
  for (const char type : types) m_values.push_back(ValueOf(type, __builtin_va_arg(list, std::uint64_t)));
}

}  // namespace hotspot
