// Each Java type: the members of CJavaObject and CJavaClass that move its values, and values to move.
#pragma once

#include <torvan/Torvan.h>

#include <limits>
#include <vector>

namespace tests {

using torvan::jni::CJavaClass;
using torvan::jni::CJavaObject;

// The values of a type, the same and in the same order as the samples of its cell in Java.
template <typename Type>
inline const std::vector<typename Type::Host> samples;

// clang-format off
#define JAVA_TYPE(Type, HostType, javaSignature)                                                                                                 \
  struct Type {                                                                                                                                  \
    using Host = HostType;                                                                                                                       \
    static constexpr const char* name = #Type;                                                                                                   \
    static constexpr const char* signature = javaSignature;                                                                                      \
    static constexpr const char* cell = "fixture/Cells$" #Type "Cell";                                                                           \
    template <typename... A> static Host Get(const CJavaObject& o, const A&... all)            { return o.Get##Type##Field(all...); }            \
    template <typename... A> static void Set(const CJavaObject& o, const A&... all)            { o.Set##Type##Field(all...); }                   \
    template <typename... A> static Host Call(const CJavaObject& o, const A&... all)           { return o.Call##Type##Method(all...); }          \
    template <typename... A> static Host CallNonvirtual(const CJavaObject& o, const A&... all) { return o.CallNonvirtual##Type##Method(all...); }\
    template <typename... A> static Host GetStatic(const CJavaClass& c, const A&... all)       { return c.GetStatic##Type##Field(all...); }      \
    template <typename... A> static void SetStatic(const CJavaClass& c, const A&... all)       { c.SetStatic##Type##Field(all...); }             \
    template <typename... A> static Host CallStatic(const CJavaClass& c, const A&... all)      { return c.CallStatic##Type##Method(all...); }    \
  };
JAVA_TYPE(Object,  CJavaObject, "Ljava/lang/Object;")
JAVA_TYPE(Boolean, jboolean,    "Z")
JAVA_TYPE(Byte,    jbyte,       "B")
JAVA_TYPE(Char,    jchar,       "C")
JAVA_TYPE(Short,   jshort,      "S")
JAVA_TYPE(Int,     jint,        "I")
JAVA_TYPE(Long,    jlong,       "J")
JAVA_TYPE(Float,   jfloat,      "F")
JAVA_TYPE(Double,  jdouble,     "D")
#undef JAVA_TYPE

template <> inline const std::vector<jboolean> samples<Boolean> = {JNI_TRUE, JNI_FALSE};
template <> inline const std::vector<jbyte>    samples<Byte>    = {-128, -1, 0, 127};
template <> inline const std::vector<jchar>    samples<Char>    = {0xE4, 0, 0xD83D, 0xFFFF};
template <> inline const std::vector<jshort>   samples<Short>   = {-32768, -1, 0, 32767};
template <> inline const std::vector<jint>     samples<Int>     = {-2147483647 - 1, -1, 0, 2147483647};
template <> inline const std::vector<jlong>    samples<Long>    = {-9223372036854775807 - 1, -1, 2147483648, 9223372036854775807};
template <> inline const std::vector<jfloat>   samples<Float>   = {
    -0.0F, 0.1F, -std::numeric_limits<jfloat>::infinity(), std::numeric_limits<jfloat>::quiet_NaN(),
    std::numeric_limits<jfloat>::max(), std::numeric_limits<jfloat>::denorm_min()};
template <> inline const std::vector<jdouble>  samples<Double>  = {
    -0.0, 0.1, -std::numeric_limits<jdouble>::infinity(), std::numeric_limits<jdouble>::quiet_NaN(),
    std::numeric_limits<jdouble>::max(), std::numeric_limits<jdouble>::denorm_min()};
// clang-format on

}  // namespace tests
