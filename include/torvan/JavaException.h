// A Java exception as a C++ exception.
#pragma once

#include <mirel/base/UnicodeString.h>
#include <torvan/Export.h>
#include <torvan/JniException.h>

namespace torvan::jni {

// Thrown when a Java exception was pending after a field access, method call or allocation.
// The Java exception is still pending in the thread: a host that goes on calling Java there clears it first, with
// `vm.Attach()->ExceptionClear()`.
class TORVAN_API CJavaException : public CJniException {
 public:
  // Copies the three texts. The exception has no source file, line 0 and the message "Exception thrown by Java.".
  // Throws CMemoryException.
  CJavaException(const mirel::base::CUnicodeString& className, const mirel::base::CUnicodeString& message,
                 const mirel::base::CUnicodeString& stackTrace);
  CJavaException(const CJavaException& other);
  virtual ~CJavaException();
  CJavaException& operator=(const CJavaException& other);

  const mirel::base::CClass* GetClass() const override;
  // Prints one banner line and nothing else; the facts are read with the accessors below.
  void Print(mirel::io::CPrintStream& stream) const override;

  // The Java class with dots, for example "java.lang.IllegalStateException".
  const mirel::base::CUnicodeString& GetJavaExceptionClassName() const noexcept { return m_className; }
  const mirel::base::CUnicodeString& GetJavaMessage() const noexcept { return m_message; }
  // The elements of the stack trace on one line, each after a tab and "at ".
  const mirel::base::CUnicodeString& GetJavaStackTrace() const noexcept { return m_stackTrace; }

  static mirel::base::CClass m_classCJavaException;

 private:
  mirel::base::CUnicodeString m_className;
  mirel::base::CUnicodeString m_message;
  mirel::base::CUnicodeString m_stackTrace;
};

}  // namespace torvan::jni
