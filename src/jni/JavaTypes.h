// What differs between the Java types.
#pragma once

#include <torvan/jni/JavaObject.h>

// One struct for each Java type: what the host receives (Host) and passes (Argument), and the JNI function that each
// family of CJavaObject and CJavaClass calls. The families themselves are the same for all types.
// clang-format off
namespace torvan::jni::types {

struct Object {
  using Host     = CJavaObject;
  using Argument = const CJavaObject&;
  static constexpr auto get            = &JNIEnv::GetObjectField;
  static constexpr auto set            = &JNIEnv::SetObjectField;
  static constexpr auto call           = &JNIEnv::CallObjectMethodV;
  static constexpr auto callNonvirtual = &JNIEnv::CallNonvirtualObjectMethodV;
  static constexpr auto getStatic      = &JNIEnv::GetStaticObjectField;
  static constexpr auto setStatic      = &JNIEnv::SetStaticObjectField;
  static constexpr auto callStatic     = &JNIEnv::CallStaticObjectMethodV;
};

struct Boolean {
  using Host     = jboolean;
  using Argument = jboolean;
  static constexpr auto get            = &JNIEnv::GetBooleanField;
  static constexpr auto set            = &JNIEnv::SetBooleanField;
  static constexpr auto call           = &JNIEnv::CallBooleanMethodV;
  static constexpr auto callNonvirtual = &JNIEnv::CallNonvirtualBooleanMethodV;
  static constexpr auto getStatic      = &JNIEnv::GetStaticBooleanField;
  static constexpr auto setStatic      = &JNIEnv::SetStaticBooleanField;
  static constexpr auto callStatic     = &JNIEnv::CallStaticBooleanMethodV;
};

struct Byte {
  using Host     = jbyte;
  using Argument = jbyte;
  static constexpr auto get            = &JNIEnv::GetByteField;
  static constexpr auto set            = &JNIEnv::SetByteField;
  static constexpr auto call           = &JNIEnv::CallByteMethodV;
  static constexpr auto callNonvirtual = &JNIEnv::CallNonvirtualByteMethodV;
  static constexpr auto getStatic      = &JNIEnv::GetStaticByteField;
  static constexpr auto setStatic      = &JNIEnv::SetStaticByteField;
  static constexpr auto callStatic     = &JNIEnv::CallStaticByteMethodV;
};

struct Char {
  using Host     = jchar;
  using Argument = jchar;
  static constexpr auto get            = &JNIEnv::GetCharField;
  static constexpr auto set            = &JNIEnv::SetCharField;
  static constexpr auto call           = &JNIEnv::CallCharMethodV;
  static constexpr auto callNonvirtual = &JNIEnv::CallNonvirtualCharMethodV;
  static constexpr auto getStatic      = &JNIEnv::GetStaticCharField;
  static constexpr auto setStatic      = &JNIEnv::SetStaticCharField;
  static constexpr auto callStatic     = &JNIEnv::CallStaticCharMethodV;
};

struct Short {
  using Host     = jshort;
  using Argument = jshort;
  static constexpr auto get            = &JNIEnv::GetShortField;
  static constexpr auto set            = &JNIEnv::SetShortField;
  static constexpr auto call           = &JNIEnv::CallShortMethodV;
  static constexpr auto callNonvirtual = &JNIEnv::CallNonvirtualShortMethodV;
  static constexpr auto getStatic      = &JNIEnv::GetStaticShortField;
  static constexpr auto setStatic      = &JNIEnv::SetStaticShortField;
  static constexpr auto callStatic     = &JNIEnv::CallStaticShortMethodV;
};

struct Int {
  using Host     = jint;
  using Argument = jint;
  static constexpr auto get            = &JNIEnv::GetIntField;
  static constexpr auto set            = &JNIEnv::SetIntField;
  static constexpr auto call           = &JNIEnv::CallIntMethodV;
  static constexpr auto callNonvirtual = &JNIEnv::CallNonvirtualIntMethodV;
  static constexpr auto getStatic      = &JNIEnv::GetStaticIntField;
  static constexpr auto setStatic      = &JNIEnv::SetStaticIntField;
  static constexpr auto callStatic     = &JNIEnv::CallStaticIntMethodV;
};

struct Long {
  using Host     = jlong;
  using Argument = jlong;
  static constexpr auto get            = &JNIEnv::GetLongField;
  static constexpr auto set            = &JNIEnv::SetLongField;
  static constexpr auto call           = &JNIEnv::CallLongMethodV;
  static constexpr auto callNonvirtual = &JNIEnv::CallNonvirtualLongMethodV;
  static constexpr auto getStatic      = &JNIEnv::GetStaticLongField;
  static constexpr auto setStatic      = &JNIEnv::SetStaticLongField;
  static constexpr auto callStatic     = &JNIEnv::CallStaticLongMethodV;
};

struct Float {
  using Host     = jfloat;
  using Argument = jfloat;
  static constexpr auto get            = &JNIEnv::GetFloatField;
  static constexpr auto set            = &JNIEnv::SetFloatField;
  static constexpr auto call           = &JNIEnv::CallFloatMethodV;
  static constexpr auto callNonvirtual = &JNIEnv::CallNonvirtualFloatMethodV;
  static constexpr auto getStatic      = &JNIEnv::GetStaticFloatField;
  static constexpr auto setStatic      = &JNIEnv::SetStaticFloatField;
  static constexpr auto callStatic     = &JNIEnv::CallStaticFloatMethodV;
};

struct Double {
  using Host     = jdouble;
  using Argument = jdouble;
  static constexpr auto get            = &JNIEnv::GetDoubleField;
  static constexpr auto set            = &JNIEnv::SetDoubleField;
  static constexpr auto call           = &JNIEnv::CallDoubleMethodV;
  static constexpr auto callNonvirtual = &JNIEnv::CallNonvirtualDoubleMethodV;
  // Intentional: a static double is read as a char and converted; hosts rely on that value.
  static constexpr auto getStatic      = &JNIEnv::GetStaticCharField;
  static constexpr auto setStatic      = &JNIEnv::SetStaticDoubleField;
  static constexpr auto callStatic     = &JNIEnv::CallStaticDoubleMethodV;
};

struct Void {
  using Host     = void;
  static constexpr auto call           = &JNIEnv::CallVoidMethodV;
  static constexpr auto callNonvirtual = &JNIEnv::CallNonvirtualVoidMethodV;
  static constexpr auto callStatic     = &JNIEnv::CallStaticVoidMethodV;
};

}  // namespace torvan::jni::types

// The types in order, for tables of accessors: ROW(Type, Text) is applied to each.
#define TORVAN_FIELD_TYPES(ROW, Text)                                                                \
  ROW(Object, Text) ROW(Boolean, Text) ROW(Byte, Text)  ROW(Char, Text) ROW(Short, Text) ROW(Int, Text) \
  ROW(Long, Text)   ROW(Float, Text)   ROW(Double, Text)
#define TORVAN_RESULT_TYPES(ROW, Text) TORVAN_FIELD_TYPES(ROW, Text) ROW(Void, Text)
// clang-format on
