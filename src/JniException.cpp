#include <torvan/JniException.h>

namespace torvan::jni {

CJniException::CJniException(const char* file, unsigned int line, const char* message, const char* detail)
    : CException(file, line, message, detail) {}

CJniException::CJniException(const CJniException& other) = default;

CJniException::~CJniException() = default;

CJniException& CJniException::operator=(const CJniException& other) = default;

const mirel::base::CClass* CJniException::GetClass() const { return &m_classCJniException; }

}  // namespace torvan::jni
