// A Java class.
#pragma once

#include <torvan/jni/JavaObject.h>

namespace torvan::jni {

// A Java class: its static fields and methods, and new objects of it.
// A handle as every CJavaObject is; its object is the java.lang.Class. The families below work as those of CJavaObject
// do, except that a null class is passed on to JNI untested.
class TORVAN_API CJavaClass : public CJavaObject {
 public:
  CJavaClass(const CJavaClass& other);
  virtual ~CJavaClass() noexcept(false);
  CJavaClass& operator=(const CJavaClass& other);

  // The reference that the handle works with, owned by the handle; null for a null class.
  operator jclass() const noexcept;

  // Read a static field. Not found: "The specified static field was not found.".
  // GetStaticDoubleField reads the field as a char and returns that number: hosts rely on it.
  // clang-format off
  CJavaObject GetStaticObjectField (const char* name, const char* signature) const;
  jboolean    GetStaticBooleanField(const char* name, const char* signature) const;
  jbyte       GetStaticByteField   (const char* name, const char* signature) const;
  jchar       GetStaticCharField   (const char* name, const char* signature) const;
  jshort      GetStaticShortField  (const char* name, const char* signature) const;
  jint        GetStaticIntField    (const char* name, const char* signature) const;
  jlong       GetStaticLongField   (const char* name, const char* signature) const;
  jfloat      GetStaticFloatField  (const char* name, const char* signature) const;
  jdouble     GetStaticDoubleField (const char* name, const char* signature) const;
  CJavaObject GetStaticObjectField (const RX::UniChar* name, const RX::UniChar* signature) const;
  jboolean    GetStaticBooleanField(const RX::UniChar* name, const RX::UniChar* signature) const;
  jbyte       GetStaticByteField   (const RX::UniChar* name, const RX::UniChar* signature) const;
  jchar       GetStaticCharField   (const RX::UniChar* name, const RX::UniChar* signature) const;
  jshort      GetStaticShortField  (const RX::UniChar* name, const RX::UniChar* signature) const;
  jint        GetStaticIntField    (const RX::UniChar* name, const RX::UniChar* signature) const;
  jlong       GetStaticLongField   (const RX::UniChar* name, const RX::UniChar* signature) const;
  jfloat      GetStaticFloatField  (const RX::UniChar* name, const RX::UniChar* signature) const;
  jdouble     GetStaticDoubleField (const RX::UniChar* name, const RX::UniChar* signature) const;
  // clang-format on

  // Write a static field. Not found: "The specified static field was not found.". A null object is written as null.
  // clang-format off
  void SetStaticObjectField (const char* name, const char* signature, const CJavaObject& value) const;
  void SetStaticBooleanField(const char* name, const char* signature, jboolean value) const;
  void SetStaticByteField   (const char* name, const char* signature, jbyte value) const;
  void SetStaticCharField   (const char* name, const char* signature, jchar value) const;
  void SetStaticShortField  (const char* name, const char* signature, jshort value) const;
  void SetStaticIntField    (const char* name, const char* signature, jint value) const;
  void SetStaticLongField   (const char* name, const char* signature, jlong value) const;
  void SetStaticFloatField  (const char* name, const char* signature, jfloat value) const;
  void SetStaticDoubleField (const char* name, const char* signature, jdouble value) const;
  void SetStaticObjectField (const RX::UniChar* name, const RX::UniChar* signature, const CJavaObject& value) const;
  void SetStaticBooleanField(const RX::UniChar* name, const RX::UniChar* signature, jboolean value) const;
  void SetStaticByteField   (const RX::UniChar* name, const RX::UniChar* signature, jbyte value) const;
  void SetStaticCharField   (const RX::UniChar* name, const RX::UniChar* signature, jchar value) const;
  void SetStaticShortField  (const RX::UniChar* name, const RX::UniChar* signature, jshort value) const;
  void SetStaticIntField    (const RX::UniChar* name, const RX::UniChar* signature, jint value) const;
  void SetStaticLongField   (const RX::UniChar* name, const RX::UniChar* signature, jlong value) const;
  void SetStaticFloatField  (const RX::UniChar* name, const RX::UniChar* signature, jfloat value) const;
  void SetStaticDoubleField (const RX::UniChar* name, const RX::UniChar* signature, jdouble value) const;
  // clang-format on

  // Call a static method; its arguments follow in order, as those of CJavaObject's methods do.
  // Not found: "The specified static method was not found.".
  // clang-format off
  CJavaObject CallStaticObjectMethod (const char* name, const char* signature, ...) const;
  jboolean    CallStaticBooleanMethod(const char* name, const char* signature, ...) const;
  jbyte       CallStaticByteMethod   (const char* name, const char* signature, ...) const;
  jchar       CallStaticCharMethod   (const char* name, const char* signature, ...) const;
  jshort      CallStaticShortMethod  (const char* name, const char* signature, ...) const;
  jint        CallStaticIntMethod    (const char* name, const char* signature, ...) const;
  jlong       CallStaticLongMethod   (const char* name, const char* signature, ...) const;
  jfloat      CallStaticFloatMethod  (const char* name, const char* signature, ...) const;
  jdouble     CallStaticDoubleMethod (const char* name, const char* signature, ...) const;
  void        CallStaticVoidMethod   (const char* name, const char* signature, ...) const;
  CJavaObject CallStaticObjectMethod (const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  jboolean    CallStaticBooleanMethod(const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  jbyte       CallStaticByteMethod   (const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  jchar       CallStaticCharMethod   (const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  jshort      CallStaticShortMethod  (const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  jint        CallStaticIntMethod    (const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  jlong       CallStaticLongMethod   (const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  jfloat      CallStaticFloatMethod  (const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  jdouble     CallStaticDoubleMethod (const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  void        CallStaticVoidMethod   (const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  // clang-format on
  TORVAN_REFUSE_FAMILY(CallStatic, const char*)
  TORVAN_REFUSE_FAMILY(CallStatic, const RX::UniChar*)

  // Makes an object without running a constructor.
  // Throws CNullReferenceException for a null class, and CMemoryException when no object was made.
  CJavaObject AllocObject() const;

  // Makes an object with the constructor of this signature; its arguments follow in order, as those of CJavaObject's
  // methods do.
  // Throws CNullReferenceException for a null class, CJavaVmException "The specified constructor was not found.",
  // CMemoryException when no object was made (also because the constructor threw), and CJavaException.
  CJavaObject NewObject(const char* signature, ...) const;
  CJavaObject NewObject(const RX::UniChar* signature, ...) const;
  TORVAN_REFUSE(CJavaObject, NewObject, const char*)
  TORVAN_REFUSE(CJavaObject, NewObject, const RX::UniChar*)

 private:
  friend class CJavaVm;

  CJavaClass(const CJavaVm& vm, jclass javaClass, bool makeGlobal);
};

}  // namespace torvan::jni
