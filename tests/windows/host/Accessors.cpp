// Every accessor once, narrow and wide: what is stored is read back, what is passed is returned.
#include "Check.h"

using namespace torvan::jni;

namespace {

template <class T>
bool IsEqual(const T& left, const T& right) {
  return left == right;
}

}  // namespace

#define FIELDS(Name, T, value, prefix)                                             \
  object.Set##Name##Field(prefix##"field", prefix##"T", value);                    \
  CHECK(IsEqual<T>(object.Get##Name##Field(prefix##"field", prefix##"T"), value)); \
  javaClass.SetStatic##Name##Field(prefix##"field", prefix##"T", value);
#define READ_STATIC(Name, T, value, prefix) \
  CHECK(IsEqual<T>(javaClass.GetStatic##Name##Field(prefix##"field", prefix##"T"), value));
#define METHODS(Name, T, value, passed, prefix)                                                          \
  CHECK(IsEqual<T>(object.Call##Name##Method(prefix##"echo", prefix##"(T)T", passed), value));           \
  CHECK(IsEqual<T>(object.CallNonvirtual##Name##Method(prefix##"echo", prefix##"(T)T", passed), value)); \
  CHECK(IsEqual<T>(javaClass.CallStatic##Name##Method(prefix##"echo", prefix##"(T)T", passed), value));
#define VOIDS(number, prefix)                                                        \
  object.CallVoidMethod(prefix##"echo", prefix##"(I)V", jint{number});               \
  CHECK(object.GetIntField("field", "I") == number);                                 \
  object.CallNonvirtualVoidMethod(prefix##"echo", prefix##"(I)V", jint{number + 1}); \
  CHECK(object.GetIntField("field", "I") == number + 1);                             \
  javaClass.CallStaticVoidMethod(prefix##"echo", prefix##"(I)V", jint{number + 2});  \
  CHECK(object.GetIntField("field", "I") == number + 2);
#define EACH_TYPE(prefix)                                                    \
  FIELDS(Object, CJavaObject, object, prefix)                                \
  READ_STATIC(Object, CJavaObject, object, prefix)                           \
  METHODS(Object, CJavaObject, object, static_cast<jobject>(object), prefix) \
  NUMBER(Boolean, jboolean, JNI_TRUE, prefix)                                \
  NUMBER(Byte, jbyte, -7, prefix)                                            \
  NUMBER(Char, jchar, 0x4e2d, prefix)                                        \
  NUMBER(Short, jshort, -300, prefix)                                        \
  NUMBER(Int, jint, -70000, prefix)                                          \
  NUMBER(Long, jlong, -5000000000, prefix)                                   \
  NUMBER(Float, jfloat, 1.5f, prefix)                                        \
  FIELDS(Double, jdouble, -2.25, prefix)                                     \
  METHODS(Double, jdouble, -2.25, jdouble{-2.25}, prefix)
#define NUMBER(Name, T, value, prefix) \
  FIELDS(Name, T, value, prefix)       \
  READ_STATIC(Name, T, value, prefix)  \
  METHODS(Name, T, value, T{value}, prefix)

void host::CheckAccessors(const CJavaObject& object, const CJavaClass& javaClass) {
  EACH_TYPE()
  EACH_TYPE(L)
  VOIDS(10, )
  VOIDS(20, L)
  // A static double is read as a char is.
  javaClass.SetStaticCharField("field", "C", 77);
  CHECK(javaClass.GetStaticDoubleField("field", "D") == 77.0);
  javaClass.SetStaticCharField("field", "C", 78);
  CHECK(javaClass.GetStaticDoubleField(L"field", L"D") == 78.0);
}
