#include <torvan/jvmlauncher/JavaVmOption.h>

namespace torvan::jvmlauncher {

CJavaVmOption::CJavaVmOption() = default;
CJavaVmOption::CJavaVmOption(const CJavaVmOption& other) = default;
CJavaVmOption::~CJavaVmOption() = default;
CJavaVmOption& CJavaVmOption::operator=(const CJavaVmOption& other) = default;

const mirel::base::CClass* CJavaVmOption::GetClass() const { return &m_classCJavaVmOption; }

}  // namespace torvan::jvmlauncher
