// Failures of a Java runtime library.
#pragma once

#include <torvan/Export.h>
#include <torvan/JniException.h>

namespace torvan::jni {

// Thrown when a Java runtime library cannot be found, loaded, or used to create a VM.
class TORVAN_API CJavaRuntimeException : public CJniException {
 public:
  // Takes the source file (path below the source root, without extension), the line, the message and a further text.
  // The texts are not copied and may be null. Throws nothing.
  CJavaRuntimeException(const char* file, unsigned int line, const char* message, const char* detail);
  CJavaRuntimeException(const CJavaRuntimeException& other);
  virtual ~CJavaRuntimeException();
  CJavaRuntimeException& operator=(const CJavaRuntimeException& other);

  const mirel::base::CClass* GetClass() const override;

  static mirel::base::CClass m_classCJavaRuntimeException;
};

}  // namespace torvan::jni
