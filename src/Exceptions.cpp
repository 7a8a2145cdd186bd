// The exceptions that add nothing to their base but a class.
#include <torvan/JavaRuntimeException.h>
#include <torvan/JavaVmException.h>
#include <torvan/JavaVmLauncherException.h>
#include <torvan/JniException.h>

namespace torvan::jni {

CJniException::CJniException(const char* file, unsigned int line, const char* message, const char* detail)
    : CException(file, line, message, detail) {}
CJniException::CJniException(const CJniException& other) = default;
CJniException::~CJniException() = default;
CJniException& CJniException::operator=(const CJniException& other) = default;
const mirel::base::CClass* CJniException::GetClass() const { return &m_classCJniException; }

CJavaRuntimeException::CJavaRuntimeException(const char* file, unsigned int line, const char* message,
                                             const char* detail)
    : CJniException(file, line, message, detail) {}
CJavaRuntimeException::CJavaRuntimeException(const CJavaRuntimeException& other) = default;
CJavaRuntimeException::~CJavaRuntimeException() = default;
CJavaRuntimeException& CJavaRuntimeException::operator=(const CJavaRuntimeException& other) = default;
const mirel::base::CClass* CJavaRuntimeException::GetClass() const { return &m_classCJavaRuntimeException; }

CJavaVmException::CJavaVmException(const char* file, unsigned int line, const char* message, const char* detail)
    : CJniException(file, line, message, detail) {}
CJavaVmException::CJavaVmException(const CJavaVmException& other) = default;
CJavaVmException::~CJavaVmException() = default;
CJavaVmException& CJavaVmException::operator=(const CJavaVmException& other) = default;
const mirel::base::CClass* CJavaVmException::GetClass() const { return &m_classCJavaVmException; }

}  // namespace torvan::jni

namespace torvan::jvmlauncher {

CJavaVmLauncherException::CJavaVmLauncherException(const char* file, unsigned int line, const char* message,
                                                   const char* detail)
    : CException(file, line, message, detail) {}
CJavaVmLauncherException::CJavaVmLauncherException(const CJavaVmLauncherException& other) = default;
CJavaVmLauncherException::~CJavaVmLauncherException() = default;
CJavaVmLauncherException& CJavaVmLauncherException::operator=(const CJavaVmLauncherException& other) = default;
const mirel::base::CClass* CJavaVmLauncherException::GetClass() const { return &m_classCJavaVmLauncherException; }

}  // namespace torvan::jvmlauncher
