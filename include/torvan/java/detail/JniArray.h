// JNI's operations on arrays of numbers, by the letter of the number.
#pragma once

#include <torvan/jni/JniTypes.h>

namespace torvan::java::detail {

template <char Letter>
struct JniArray;

#define TORVAN_JAVA_JNI_ARRAY(letter, type, Name)                                               \
  template <>                                                                                   \
  struct JniArray<letter> {                                                                     \
    using Type = type;                                                                          \
    using Raw = type##Array;                                                                    \
    static jobject New(JNIEnv* env, jsize size) { return env->New##Name##Array(size); }         \
    static void Read(JNIEnv* env, jobject array, jsize from, jsize size, Type* to) {            \
      env->Get##Name##ArrayRegion(static_cast<Raw>(array), from, size, to);                     \
    }                                                                                           \
    static void Write(JNIEnv* env, jobject array, jsize from, jsize size, const Type* values) { \
      env->Set##Name##ArrayRegion(static_cast<Raw>(array), from, size, values);                 \
    }                                                                                           \
    static Type* Open(JNIEnv* env, jobject array) {                                             \
      return env->Get##Name##ArrayElements(static_cast<Raw>(array), nullptr);                   \
    }                                                                                           \
    static void Close(JNIEnv* env, jobject array, Type* elements, jint mode) {                  \
      env->Release##Name##ArrayElements(static_cast<Raw>(array), elements, mode);               \
    }                                                                                           \
  };
TORVAN_JAVA_JNI_ARRAY('Z', jboolean, Boolean)
TORVAN_JAVA_JNI_ARRAY('B', jbyte, Byte)
TORVAN_JAVA_JNI_ARRAY('C', jchar, Char)
TORVAN_JAVA_JNI_ARRAY('S', jshort, Short)
TORVAN_JAVA_JNI_ARRAY('I', jint, Int)
TORVAN_JAVA_JNI_ARRAY('J', jlong, Long)
TORVAN_JAVA_JNI_ARRAY('F', jfloat, Float)
TORVAN_JAVA_JNI_ARRAY('D', jdouble, Double)
#undef TORVAN_JAVA_JNI_ARRAY

}  // namespace torvan::java::detail
