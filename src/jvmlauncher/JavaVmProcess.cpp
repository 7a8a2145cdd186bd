#include <torvan/jvmlauncher/JavaVmProcess.h>

#include "jvmlauncher/JavaVmLauncherImplWin.h"

namespace torvan::jvmlauncher {

CJavaVmProcess::CJavaVmProcess(CJavaVmProcessImp* implementation) : m_impl(implementation) {}

CJavaVmProcess::~CJavaVmProcess() { delete m_impl; }

bool CJavaVmProcess::Wait(unsigned int milliseconds) { return m_impl->Wait(milliseconds); }
void CJavaVmProcess::Wait() { m_impl->Wait(platform::WaitInfinite); }
void CJavaVmProcess::Kill() { m_impl->Kill(); }
void CJavaVmProcess::Stop() { m_impl->Stop(); }
int CJavaVmProcess::GetExitCode() { return m_impl->GetExitCode(); }

}  // namespace torvan::jvmlauncher
