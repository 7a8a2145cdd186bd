#include <torvan/JavaVmLauncherException.h>

namespace torvan::jvmlauncher {

CJavaVmLauncherException::CJavaVmLauncherException(const char* file, unsigned int line, const char* message,
                                                   const char* detail)
    : CException(file, line, message, detail) {}

CJavaVmLauncherException::CJavaVmLauncherException(const CJavaVmLauncherException& other) = default;

CJavaVmLauncherException::~CJavaVmLauncherException() = default;

CJavaVmLauncherException& CJavaVmLauncherException::operator=(const CJavaVmLauncherException& other) = default;

const mirel::base::CClass* CJavaVmLauncherException::GetClass() const { return &m_classCJavaVmLauncherException; }

}  // namespace torvan::jvmlauncher
