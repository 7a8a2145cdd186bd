// Failures of a Java VM.
#pragma once

#include <torvan/Export.h>
#include <torvan/JniException.h>

namespace torvan::jni {

// Thrown when a VM, class, object or string cannot be used as asked: a thread cannot be attached; a class, field or
// method does not exist. The Java error that the VM raised for it stays pending in the thread.
class TORVAN_API CJavaVmException : public CJniException {
 public:
  // Takes the source file (path below the source root, without extension), the line, the message and a further text.
  // The texts are not copied and may be null. Throws nothing.
  CJavaVmException(const char* file, unsigned int line, const char* message, const char* detail);
  CJavaVmException(const CJavaVmException& other);
  virtual ~CJavaVmException();
  CJavaVmException& operator=(const CJavaVmException& other);

  const mirel::base::CClass* GetClass() const override;

  static mirel::base::CClass m_classCJavaVmException;
};

}  // namespace torvan::jni
