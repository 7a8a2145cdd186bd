// Starts Java programs and controls them.
#pragma once

#include <mirel/base/Ref.h>
#include <torvan/jvmlauncher/ArgumentList.h>
#include <torvan/jvmlauncher/JavaVmOptions.h>
#include <torvan/jvmlauncher/JavaVmProcess.h>

#include "platform/System.h"

namespace torvan::jvmlauncher {

// The implementation of CJavaVmProcess; its destructor closes the handle and does nothing else.
class CJavaVmProcessImp : public mirel::base::CBase {
 public:
  CJavaVmProcessImp() noexcept;
  ~CJavaVmProcessImp();
  CJavaVmProcessImp(const CJavaVmProcessImp&) = delete;
  CJavaVmProcessImp& operator=(const CJavaVmProcessImp&) = delete;

  // Starts the process; false when the system refuses. The system may write into the command line.
  bool Start(RX::UniChar* commandLine);

  bool Wait(unsigned int milliseconds);
  void Kill();
  void Stop();
  int GetExitCode() const;

 private:
  platform::ProcessHandle m_process;
  unsigned int m_processId;
  bool m_waited;
  unsigned int m_exitCode;
};

// The implementation of CJavaVmLauncher.
class JavaVmLauncherImpl : public mirel::base::CBase {
 public:
  explicit JavaVmLauncherImpl(const RX::UniChar* version);

  mirel::base::CRef<CJavaVmProcess> Launch(const CJavaVmOptions& options, const RX::UniChar* mainClass,
                                           const CArgumentList& arguments) const;

 private:
  mirel::base::CUnicodeString RenderCommandLine(const CJavaVmOptions& options, const RX::UniChar* mainClass,
                                                const CArgumentList& arguments) const;

  mirel::base::CUnicodeString m_command;
};

}  // namespace torvan::jvmlauncher
