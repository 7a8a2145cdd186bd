// A Java object.
#pragma once

#include <mirel/base/Null.h>
#include <mirel/base/Ref.h>
#include <rx/Text.h>
#include <torvan/Export.h>
#include <torvan/jni/JavaVm.h>
#include <torvan/jni/JniTypes.h>
#include <torvan/jni/ScalarArguments.h>

namespace torvan::jni {

class CJavaClass;
class CJniGlobalRef;
template <typename Host>
class CJniResult;

// A Java object, or null.
//
// Who owns which reference: a handle made from an object takes one global reference, in a holder that all its copies
// share. Copying a handle makes no JNI call; the last copy to go deletes the global reference. The local reference that
// JNI returned along the way is never deleted here: it ends when the thread returns to Java or is detached. A thread
// that does neither and makes very many calls puts PushLocalFrame and PopLocalFrame around a batch of them.
//
// A null handle has no reference but still knows its VM. Threads: the rule is CJavaVm's. A handle that an operation
// returns came from the same VM handle as this one.
//
// Names and signatures are JNI's own and are passed on unchanged ("count", "I"; "parse", "(Ljava/lang/String;)J"); wide
// ones are converted to UTF-8. Nothing is cached: every call looks its member up. The families below throw
// CNullReferenceException for a null object; CJavaVmException "Failed to get the class of the object." and the text
// told with each family when the member is not found, with the VM's own error left pending; CJavaException when a Java
// exception is pending afterwards, and leave it pending; CMemoryException when a result cannot be held.
class TORVAN_API CJavaObject : public mirel::base::CBase {
 public:
  CJavaObject(const CJavaObject& other);
  virtual ~CJavaObject() noexcept(false);
  CJavaObject& operator=(const CJavaObject& other);

  // The reference that the handle works with, owned by the handle; null for a null object.
  operator jobject() const noexcept { return m_ref; }

  // Tell whether the handle is null.
  bool operator==(const mirel::base::CNull& null) const noexcept;
  bool operator!=(const mirel::base::CNull& null) const noexcept;
  bool operator==(mirel::base::CNull* null) const noexcept;
  bool operator!=(mirel::base::CNull* null) const noexcept;

  // Tell whether two handles refer to the same Java object of the same VM; two null handles of one VM do.
  bool operator==(const CJavaObject& other) const;
  bool operator!=(const CJavaObject& other) const;

  // Tells whether the object is an instance of a class; a null object is of none.
  // Throws CJavaVmException "The specified class was not found.", or CNullReferenceException for a null class.
  bool IsInstanceOf(const char* className) const;
  bool IsInstanceOf(const RX::UniChar* className) const;
  bool IsInstanceOf(const CJavaClass& javaClass) const;

  // Read an instance field. Not found: "The specified field was not found.".
  // clang-format off
  CJavaObject GetObjectField (const char* name, const char* signature) const;
  jboolean    GetBooleanField(const char* name, const char* signature) const;
  jbyte       GetByteField   (const char* name, const char* signature) const;
  jchar       GetCharField   (const char* name, const char* signature) const;
  jshort      GetShortField  (const char* name, const char* signature) const;
  jint        GetIntField    (const char* name, const char* signature) const;
  jlong       GetLongField   (const char* name, const char* signature) const;
  jfloat      GetFloatField  (const char* name, const char* signature) const;
  jdouble     GetDoubleField (const char* name, const char* signature) const;
  CJavaObject GetObjectField (const RX::UniChar* name, const RX::UniChar* signature) const;
  jboolean    GetBooleanField(const RX::UniChar* name, const RX::UniChar* signature) const;
  jbyte       GetByteField   (const RX::UniChar* name, const RX::UniChar* signature) const;
  jchar       GetCharField   (const RX::UniChar* name, const RX::UniChar* signature) const;
  jshort      GetShortField  (const RX::UniChar* name, const RX::UniChar* signature) const;
  jint        GetIntField    (const RX::UniChar* name, const RX::UniChar* signature) const;
  jlong       GetLongField   (const RX::UniChar* name, const RX::UniChar* signature) const;
  jfloat      GetFloatField  (const RX::UniChar* name, const RX::UniChar* signature) const;
  jdouble     GetDoubleField (const RX::UniChar* name, const RX::UniChar* signature) const;
  // clang-format on

  // Write an instance field. Not found: "The specified field was not found.". A null object is written as null.
  // clang-format off
  void SetObjectField (const char* name, const char* signature, const CJavaObject& value) const;
  void SetBooleanField(const char* name, const char* signature, jboolean value) const;
  void SetByteField   (const char* name, const char* signature, jbyte value) const;
  void SetCharField   (const char* name, const char* signature, jchar value) const;
  void SetShortField  (const char* name, const char* signature, jshort value) const;
  void SetIntField    (const char* name, const char* signature, jint value) const;
  void SetLongField   (const char* name, const char* signature, jlong value) const;
  void SetFloatField  (const char* name, const char* signature, jfloat value) const;
  void SetDoubleField (const char* name, const char* signature, jdouble value) const;
  void SetObjectField (const RX::UniChar* name, const RX::UniChar* signature, const CJavaObject& value) const;
  void SetBooleanField(const RX::UniChar* name, const RX::UniChar* signature, jboolean value) const;
  void SetByteField   (const RX::UniChar* name, const RX::UniChar* signature, jbyte value) const;
  void SetCharField   (const RX::UniChar* name, const RX::UniChar* signature, jchar value) const;
  void SetShortField  (const RX::UniChar* name, const RX::UniChar* signature, jshort value) const;
  void SetIntField    (const RX::UniChar* name, const RX::UniChar* signature, jint value) const;
  void SetLongField   (const RX::UniChar* name, const RX::UniChar* signature, jlong value) const;
  void SetFloatField  (const RX::UniChar* name, const RX::UniChar* signature, jfloat value) const;
  void SetDoubleField (const RX::UniChar* name, const RX::UniChar* signature, jdouble value) const;
  // clang-format on

  // Call an instance method, the one that the object's class declares or inherits; its arguments follow in order,
  // handles with a cast and integers of the right width: see <torvan/jni/ScalarArguments.h>.
  // Not found: "The specified method was not found." with narrow names, "The specified field was not found." with wide
  // ones.
  // clang-format off
  CJavaObject CallObjectMethod (const char* name, const char* signature, ...) const;
  jboolean    CallBooleanMethod(const char* name, const char* signature, ...) const;
  jbyte       CallByteMethod   (const char* name, const char* signature, ...) const;
  jchar       CallCharMethod   (const char* name, const char* signature, ...) const;
  jshort      CallShortMethod  (const char* name, const char* signature, ...) const;
  jint        CallIntMethod    (const char* name, const char* signature, ...) const;
  jlong       CallLongMethod   (const char* name, const char* signature, ...) const;
  jfloat      CallFloatMethod  (const char* name, const char* signature, ...) const;
  jdouble     CallDoubleMethod (const char* name, const char* signature, ...) const;
  void        CallVoidMethod   (const char* name, const char* signature, ...) const;
  CJavaObject CallObjectMethod (const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  jboolean    CallBooleanMethod(const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  jbyte       CallByteMethod   (const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  jchar       CallCharMethod   (const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  jshort      CallShortMethod  (const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  jint        CallIntMethod    (const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  jlong       CallLongMethod   (const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  jfloat      CallFloatMethod  (const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  jdouble     CallDoubleMethod (const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  void        CallVoidMethod   (const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  // clang-format on

  // Call an instance method without virtual lookup, on the object's own class: an override is called, not what it
  // overrides. Not found: as above.
  // clang-format off
  CJavaObject CallNonvirtualObjectMethod (const char* name, const char* signature, ...) const;
  jboolean    CallNonvirtualBooleanMethod(const char* name, const char* signature, ...) const;
  jbyte       CallNonvirtualByteMethod   (const char* name, const char* signature, ...) const;
  jchar       CallNonvirtualCharMethod   (const char* name, const char* signature, ...) const;
  jshort      CallNonvirtualShortMethod  (const char* name, const char* signature, ...) const;
  jint        CallNonvirtualIntMethod    (const char* name, const char* signature, ...) const;
  jlong       CallNonvirtualLongMethod   (const char* name, const char* signature, ...) const;
  jfloat      CallNonvirtualFloatMethod  (const char* name, const char* signature, ...) const;
  jdouble     CallNonvirtualDoubleMethod (const char* name, const char* signature, ...) const;
  void        CallNonvirtualVoidMethod   (const char* name, const char* signature, ...) const;
  CJavaObject CallNonvirtualObjectMethod (const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  jboolean    CallNonvirtualBooleanMethod(const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  jbyte       CallNonvirtualByteMethod   (const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  jchar       CallNonvirtualCharMethod   (const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  jshort      CallNonvirtualShortMethod  (const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  jint        CallNonvirtualIntMethod    (const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  jlong       CallNonvirtualLongMethod   (const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  jfloat      CallNonvirtualFloatMethod  (const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  jdouble     CallNonvirtualDoubleMethod (const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  void        CallNonvirtualVoidMethod   (const RX::UniChar* name, const RX::UniChar* signature, ...) const;
  // clang-format on

  TORVAN_REFUSE_FAMILY(Call, const char*)
  TORVAN_REFUSE_FAMILY(Call, const RX::UniChar*)
  TORVAN_REFUSE_FAMILY(CallNonvirtual, const char*)
  TORVAN_REFUSE_FAMILY(CallNonvirtual, const RX::UniChar*)

 protected:
  // Makes a handle of a reference, which may be null.
  // With `makeGlobal` a new global reference is taken and `object` left alone; without it, `object` is a global
  // reference that the handle owns from now on.
  CJavaObject(const CJavaVm& vm, jobject object, bool makeGlobal);

 private:
  friend class CJavaClass;
  friend class CJavaString;
  friend class CJavaVm;
  template <typename Host>
  friend class CJniResult;

  RX_NOT_EXPORTED_BEGIN
  mirel::base::CRef<CJniGlobalRef> m_holder;
  RX_NOT_EXPORTED_END
  CJavaVm m_vm;
  jobject m_ref;
};

}  // namespace torvan::jni
