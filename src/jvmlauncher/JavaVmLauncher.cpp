#include <torvan/jvmlauncher/JavaVmLauncher.h>

#include "jvmlauncher/JavaVmLauncherImplWin.h"

namespace torvan::jvmlauncher {

CJavaVmLauncher::CJavaVmLauncher(const RX::UniChar* version) : m_impl(new JavaVmLauncherImpl(version)) {}

CJavaVmLauncher::~CJavaVmLauncher() { delete m_impl; }

mirel::base::CRef<CJavaVmProcess> CJavaVmLauncher::Launch(const CJavaVmOptions& options, const RX::UniChar* mainClass,
                                                          const CArgumentList& arguments) {
  return m_impl->Launch(options, mainClass, arguments);
}

}  // namespace torvan::jvmlauncher
