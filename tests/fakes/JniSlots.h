// The slots of JNI's function tables, and how calls of them read in a log.
#pragma once

#include <jni.h>

#include <cstdarg>
#include <cstddef>
#include <string>
#include <type_traits>

namespace tests {

// The name of the slot at an index of a function table.
std::string SlotName(std::size_t slot, const JNINativeInterface_*);
std::string SlotName(std::size_t slot, const JNIInvokeInterface_*);

// The index of a member in its function table.
template <typename Interface, typename Function>
std::size_t SlotIndex(Function Interface::*slot) {
  static const Interface table{};
  const auto* first = reinterpret_cast<const unsigned char*>(&table);
  const auto* member = reinterpret_cast<const unsigned char*>(&(table.*slot));
  return static_cast<std::size_t>(member - first) / sizeof(void*);
}

// What a method or field ID of a fake VM points to.
struct FakeMember {
  std::string name;
  std::string descriptor;
};

// A global reference is its local with this bit set.
constexpr std::size_t FirstLocal = 0x1000;
constexpr std::size_t GlobalBit = 0x1000000;

// How an argument reads: local:5, global:5, method:getName, field:count, "text", 7, null.
std::string Describe(jobject object);
std::string Describe(jmethodID method);
std::string Describe(jfieldID field);
std::string Describe(const char* text);
std::string Describe(const jchar* text);
std::string Describe(double value);
template <typename Integer, std::enable_if_t<std::is_integral_v<Integer>, int> = 0>
std::string Describe(Integer value) {
  return std::to_string(value);
}
// Pointers for results are not shown.
inline std::string Describe(void** place) { return place != nullptr ? "" : "nowhere"; }
inline std::string Describe(void* arguments) { return arguments != nullptr ? "given" : "null"; }
inline std::string Describe(jboolean* place) { return place != nullptr ? "given" : "null"; }
inline std::string Describe(const jvalue*) { return "array"; }

// The arguments that a Java method of this descriptor finds in a variable argument list, for example "7, local:2".
std::string DescribeArguments(const std::string& descriptor, va_list arguments);

}  // namespace tests
