#include <torvan/JavaException.h>

#include <mirel/io/PrintStream.h>

namespace torvan::jni {

CJavaException::CJavaException(const mirel::base::CUnicodeString& className, const mirel::base::CUnicodeString& message,
                               const mirel::base::CUnicodeString& stackTrace)
    : CJniException(nullptr, 0, "Exception thrown by Java.", nullptr),
      m_className(className),
      m_message(message),
      m_stackTrace(stackTrace) {}

CJavaException::CJavaException(const CJavaException& other) = default;

CJavaException::~CJavaException() = default;

CJavaException& CJavaException::operator=(const CJavaException& other) = default;

const mirel::base::CClass* CJavaException::GetClass() const { return &m_classCJavaException; }

// Intentional: prints the banner only, not even the base's facts; the facts have to be asked for.
void CJavaException::Print(mirel::io::CPrintStream& stream) const {
  stream.PrintLine("--- Java Exception occured -----------------------------------------------------");  // sic
}

}  // namespace torvan::jni
