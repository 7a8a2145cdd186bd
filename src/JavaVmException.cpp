#include <torvan/JavaVmException.h>

namespace torvan::jni {

CJavaVmException::CJavaVmException(const char* file, unsigned int line, const char* message, const char* detail)
    : CJniException(file, line, message, detail) {}

CJavaVmException::CJavaVmException(const CJavaVmException& other) = default;

CJavaVmException::~CJavaVmException() = default;

CJavaVmException& CJavaVmException::operator=(const CJavaVmException& other) = default;

const mirel::base::CClass* CJavaVmException::GetClass() const { return &m_classCJavaVmException; }

}  // namespace torvan::jni
