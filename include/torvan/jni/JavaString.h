// A Java string.
#pragma once

#include <mirel/base/UnicodeString.h>
#include <torvan/jni/JavaObject.h>

namespace torvan::jni {

// A java.lang.String, or null; made by CJavaVm::NewString or from an object that is one.
class TORVAN_API CJavaString : public CJavaObject {
 public:
  CJavaString(const CJavaString& other);
  // Takes any object for a string, untested; the copies share it.
  CJavaString(const CJavaObject& object);
  virtual ~CJavaString() noexcept(false);

  CJavaString& operator=(const CJavaString& other);
  // Makes a new Java string of the units up to the terminating zero; null and empty text make the handle null.
  // Until the next assignment the handle works with the local reference of the thread that assigned: use it in this
  // thread, before it returns to Java or is detached, and before PopLocalFrame ends the local frame it was assigned in.
  // What CJavaVm::NewString returns has no such limits. Throws as CJavaVm::NewString does.
  CJavaString& operator=(const RX::UniChar* text);

  // The reference that the handle works with; null for a null string.
  operator jstring() const noexcept;
  // Copies the text up to its first zero unit; a null string makes a null text. Throws CMemoryException.
  operator mirel::base::CUnicodeString() const;

 private:
  friend class CJavaVm;

  CJavaString(const CJavaVm& vm, jstring string, bool makeGlobal);
  CJavaString(const CJavaVm& vm, const RX::UniChar* text);
};

}  // namespace torvan::jni
