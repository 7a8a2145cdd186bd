// The base of the in-process failures.
#pragma once

#include <mirel/base/Exception.h>
#include <torvan/Export.h>

namespace torvan::jni {

// The base of every exception of torvan::jni; catch it to catch them all. It is never thrown itself.
class TORVAN_API CJniException : public mirel::base::CException {
 public:
  // Takes the source file (path below the source root, without extension), the line, the message and a further text.
  // The texts are not copied and may be null. Throws nothing.
  CJniException(const char* file, unsigned int line, const char* message, const char* detail);
  CJniException(const CJniException& other);
  virtual ~CJniException();
  CJniException& operator=(const CJniException& other);

  const mirel::base::CClass* GetClass() const override;

  static mirel::base::CClass m_classCJniException;
};

}  // namespace torvan::jni
