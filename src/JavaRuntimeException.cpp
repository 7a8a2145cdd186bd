#include <torvan/JavaRuntimeException.h>

namespace torvan::jni {

CJavaRuntimeException::CJavaRuntimeException(const char* file, unsigned int line, const char* message,
                                             const char* detail)
    : CJniException(file, line, message, detail) {}

CJavaRuntimeException::CJavaRuntimeException(const CJavaRuntimeException& other) = default;

CJavaRuntimeException::~CJavaRuntimeException() = default;

CJavaRuntimeException& CJavaRuntimeException::operator=(const CJavaRuntimeException& other) = default;

const mirel::base::CClass* CJavaRuntimeException::GetClass() const { return &m_classCJavaRuntimeException; }

}  // namespace torvan::jni
