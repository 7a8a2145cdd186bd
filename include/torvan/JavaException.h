// A Java exception as a C++ exception.
#pragma once

#include <mirel/base/UnicodeString.h>
#include <torvan/Export.h>
#include <torvan/JniException.h>

namespace torvan::jni {

// Thrown when a Java exception is pending after a field access, method call or allocation; says what it was.
//
// What stays pending: the library asks for Java's pending exception and reads it, but never clears it. Whatever an
// operation on a VM, class, object or string threw, the host calls `vm.Attach()->ExceptionClear()` before the thread
// uses Java again. JNI forbids most calls until then, and the next access would report the old exception as its own.
//
// The reads are JNI calls, too; when one fails, CJavaVmException is thrown in place of this exception. HotSpot refuses
// one of them for every Java exception: it throws CJavaVmException "Failed to get the method id of the getClass ()
// method of the exception occured." (so spelled), and the NoSuchMethodError of that read is then pending in place of
// the original exception. A Java exception without a message already fails an earlier read, "Failed to get the message
// of the exception occured.", and is itself still pending.
class TORVAN_API CJavaException : public CJniException {
 public:
  // Copies the three texts. The source file is null, the line 0, the message "Exception thrown by Java.".
  // Throws CMemoryException.
  CJavaException(const mirel::base::CUnicodeString& className, const mirel::base::CUnicodeString& message,
                 const mirel::base::CUnicodeString& stackTrace);
  CJavaException(const CJavaException& other);
  virtual ~CJavaException();
  CJavaException& operator=(const CJavaException& other);

  const mirel::base::CClass* GetClass() const override;
  // Prints one banner line and nothing else; the accessors below return the facts.
  void Print(mirel::io::CPrintStream& stream) const override;

  // The Java class name with dots, for example "java.lang.IllegalStateException".
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
