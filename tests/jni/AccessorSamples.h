// Values to pass to Java and to get back.
#pragma once

#include <torvan/jni/JniTypes.h>

#include <cstring>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include "jni/AccessorMembers.h"

namespace tests {

// A value, and how the log shows it.
template <typename Value>
struct Sample {
  Value value;
  const char* shown;
};

// The limits of each type, and values that a wrong width or sign would change.
template <typename Value>
const std::vector<Sample<Value>> samples;

// clang-format off
template <> inline const std::vector<Sample<jboolean>> samples<jboolean> = {
    {0, "0"}, {1, "1"}, {0x80, "128"}, {0xFF, "255"}};
template <> inline const std::vector<Sample<jbyte>> samples<jbyte> = {
    {-128, "-128"}, {-1, "-1"}, {0, "0"}, {127, "127"}};
template <> inline const std::vector<Sample<jchar>> samples<jchar> = {
    {0, "0"}, {0x7FFF, "32767"}, {0x8000, "32768"}, {0xFFFF, "65535"}};
template <> inline const std::vector<Sample<jshort>> samples<jshort> = {
    {-32768, "-32768"}, {-1, "-1"}, {0, "0"}, {32767, "32767"}};
template <> inline const std::vector<Sample<jint>> samples<jint> = {
    {-2147483647 - 1, "-2147483648"}, {-1, "-1"}, {0, "0"}, {2147483647, "2147483647"}};
template <> inline const std::vector<Sample<jlong>> samples<jlong> = {
    {-9223372036854775807 - 1, "-9223372036854775808"}, {-1, "-1"}, {0x80000000, "2147483648"},
    {9223372036854775807, "9223372036854775807"}};
template <> inline const std::vector<Sample<jfloat>> samples<jfloat> = {
    {-0.0F, "-0"}, {0.1F, "0.1"}, {std::numeric_limits<jfloat>::infinity(), "inf"},
    {std::numeric_limits<jfloat>::quiet_NaN(), "nan"}, {std::numeric_limits<jfloat>::max(), "3.40282e+38"},
    {std::numeric_limits<jfloat>::denorm_min(), "1.4013e-45"}};
template <> inline const std::vector<Sample<jdouble>> samples<jdouble> = {
    {-0.0, "-0"}, {0.1, "0.1"}, {-std::numeric_limits<jdouble>::infinity(), "-inf"},
    {std::numeric_limits<jdouble>::quiet_NaN(), "nan"}, {std::numeric_limits<jdouble>::max(), "1.79769e+308"},
    {std::numeric_limits<jdouble>::denorm_min(), "4.94066e-324"}};
// The objects themselves are the target's.
template <> inline const std::vector<Sample<jobject>> samples<jobject> = {{nullptr, "local:3"}, {nullptr, "null"}};
// clang-format on

// What Java returns and callers pass: a local reference to an object.
template <typename Value>
Value FromJava(const Target& target, std::size_t sample) {
  if constexpr (std::is_same_v<Value, jobject>) return sample == 0 ? target.local : nullptr;
  return samples<Value>[sample].value;
}

// What a host passes to a setter: a handle of an object.
template <typename Value>
decltype(auto) FromHost(const Target& target, std::size_t sample) {
  if constexpr (std::is_same_v<Value, jobject>) {
    return sample == 0 ? (target.value) : (target.nothing);
  } else {
    return Value(samples<Value>[sample].value);
  }
}

// The value's bytes, so that NaN equals itself and -0 is not 0.
template <typename Value>
std::string Bits(Value value) {
  std::string bits(sizeof(value), '\0');
  std::memcpy(bits.data(), &value, sizeof(value));
  return bits;
}

}  // namespace tests
