// JNI's operations by the letter of the type that they return.
#pragma once

#include <torvan/jni/JniTypes.h>

namespace torvan::java::detail {

template <char Letter>
struct Jni;

#define TORVAN_JAVA_JNI(letter, type, member, Name)                                                                  \
  template <>                                                                                                        \
  struct Jni<letter> {                                                                                               \
    using Type = type;                                                                                               \
    static Type& In(jvalue& value) { return value.member; }                                                          \
    static type Call(JNIEnv* env, jobject object, jmethodID id, const jvalue* values) {                              \
      return env->Call##Name##MethodA(object, id, values);                                                           \
    }                                                                                                                \
    static type CallSuper(JNIEnv* env, jobject object, jclass type_, jmethodID id, const jvalue* values) {           \
      return env->CallNonvirtual##Name##MethodA(object, type_, id, values);                                          \
    }                                                                                                                \
    static type CallStatic(JNIEnv* env, jclass type_, jmethodID id, const jvalue* values) {                          \
      return env->CallStatic##Name##MethodA(type_, id, values);                                                      \
    }                                                                                                                \
    static type Get(JNIEnv* env, jobject object, jfieldID id) { return env->Get##Name##Field(object, id); }          \
    static type GetStatic(JNIEnv* env, jclass type_, jfieldID id) { return env->GetStatic##Name##Field(type_, id); } \
    static void Set(JNIEnv* env, jobject object, jfieldID id, jvalue value) {                                        \
      env->Set##Name##Field(object, id, value.member);                                                               \
    }                                                                                                                \
    static void SetStatic(JNIEnv* env, jclass type_, jfieldID id, jvalue value) {                                    \
      env->SetStatic##Name##Field(type_, id, value.member);                                                          \
    }                                                                                                                \
  };
TORVAN_JAVA_JNI('Z', jboolean, z, Boolean)
TORVAN_JAVA_JNI('B', jbyte, b, Byte)
TORVAN_JAVA_JNI('C', jchar, c, Char)
TORVAN_JAVA_JNI('S', jshort, s, Short)
TORVAN_JAVA_JNI('I', jint, i, Int)
TORVAN_JAVA_JNI('J', jlong, j, Long)
TORVAN_JAVA_JNI('F', jfloat, f, Float)
TORVAN_JAVA_JNI('D', jdouble, d, Double)
TORVAN_JAVA_JNI('L', jobject, l, Object)
#undef TORVAN_JAVA_JNI

template <>
struct Jni<'V'> {
  static void Call(JNIEnv* env, jobject object, jmethodID id, const jvalue* values) {
    env->CallVoidMethodA(object, id, values);
  }
  static void CallSuper(JNIEnv* env, jobject object, jclass type, jmethodID id, const jvalue* values) {
    env->CallNonvirtualVoidMethodA(object, type, id, values);
  }
  static void CallStatic(JNIEnv* env, jclass type, jmethodID id, const jvalue* values) {
    env->CallStaticVoidMethodA(type, id, values);
  }
};

}  // namespace torvan::java::detail
