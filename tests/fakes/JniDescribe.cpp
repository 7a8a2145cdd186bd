#include "fakes/JniSlots.h"

#include <cstdint>
#include <sstream>

namespace tests {
namespace {

std::string DescribeMember(const char* kind, const void* id) {
  return id == nullptr ? "null" : kind + static_cast<const FakeMember*>(id)->name;
}

// ASCII unchanged, every other unit as \xxxx.
template <typename Unit>
std::string Quote(const Unit* text) {
  if (text == nullptr) return "null";
  std::ostringstream quoted;
  quoted << '"';
  for (; *text != 0; ++text) {
    const auto unit = static_cast<std::make_unsigned_t<Unit>>(*text);
    if (unit >= 0x20 && unit < 0x7F) {
      quoted << static_cast<char>(unit);
    } else {
      quoted << '\\' << std::hex << static_cast<unsigned int>(unit) << std::dec;
    }
  }
  quoted << '"';
  return quoted.str();
}

// Where the type at `type` in a descriptor ends.
const char* SkipType(const char* type) {
  while (*type == '[') ++type;
  if (*type == 'L') {
    while (*type != ';') ++type;
  }
  return type + 1;
}

}  // namespace

std::string Describe(jobject object) {
  if (object == nullptr) return "null";
  const auto value = reinterpret_cast<std::uintptr_t>(object);
  const bool global = (value & GlobalBit) != 0;
  return (global ? "global:" : "local:") + std::to_string((value & ~GlobalBit) - FirstLocal);
}

std::string Describe(jmethodID method) { return DescribeMember("method:", method); }
std::string Describe(jfieldID field) { return DescribeMember("field:", field); }
std::string Describe(const char* text) { return Quote(text); }
std::string Describe(const jchar* text) { return Quote(text); }

std::string Describe(double value) {
  std::ostringstream text;
  text << value;
  return text.str();
}

std::string DescribeArguments(const std::string& descriptor, va_list arguments) {
  va_list rest;
  va_copy(rest, arguments);
  std::string text;
  // Variable arguments come promoted: everything below int as int, float as double.
  for (const char* type = descriptor.c_str() + 1; *type != ')' && *type != '\0'; type = SkipType(type)) {
    if (!text.empty()) text += ", ";
    switch (*type) {
      case 'Z':
      case 'B':
      case 'C':
      case 'S':
        text += Describe(va_arg(rest, int));
        break;
      case 'I':
        text += Describe(va_arg(rest, jint));
        break;
      case 'J':
        text += Describe(va_arg(rest, jlong));
        break;
      case 'F':
      case 'D':
        text += Describe(va_arg(rest, double));
        break;
      default:
        text += Describe(va_arg(rest, jobject));
    }
  }
  va_end(rest);
  return text;
}

}  // namespace tests
