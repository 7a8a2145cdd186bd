#include "jvmlauncher/JavaVmLauncherImplWin.h"

#include <mirel/base/At.h>
#include <mirel/base/IllegalArgumentException.h>
#include <rx/UniString.h>
#include <torvan/JavaVmLauncherException.h>
#include <torvan/jvmlauncher/options/JarOption.h>

#include "Text.h"
#include "jvmlauncher/InstalledJavaVm.h"
#include "jvmlauncher/options/Rendering.h"
#include "platform/Conventions.h"

namespace torvan::jvmlauncher {

using mirel::base::At;
using mirel::base::CIllegalArgumentException;
using mirel::base::CRef;
using mirel::base::CUnicodeString;
using mirel::base::CUnicodeStringBuffer;
using options::AppendQuoted;
using options::RenderingCapacity;
using platform::System;

namespace {

bool HasJarOption(const CJavaVmOptions& options) {
  for (unsigned int i = 0; i < options.GetOptionCount(); ++i) {
    if (options.GetOptionAt(i).IsInstanceOf(&options::CJarOption::m_classCJarOption)) return true;
  }
  return false;
}

}  // namespace

CJavaVmProcessImp::CJavaVmProcessImp() noexcept : m_process(nullptr), m_processId(0), m_waited(false), m_exitCode(0) {}

CJavaVmProcessImp::~CJavaVmProcessImp() {
  if (m_process != nullptr) System::Current().ReleaseHandle(m_process);
}

bool CJavaVmProcessImp::Start(RX::UniChar* commandLine) {
  platform::StartedProcess started = {};
  if (!System::Current().StartProcess(commandLine, false, 0, &started)) return false;
  if (started.thread != nullptr) System::Current().ReleaseHandle(started.thread);
  m_process = started.process;
  m_processId = started.processId;
  return true;
}

bool CJavaVmProcessImp::Wait(unsigned int milliseconds) {
  switch (System::Current().WaitFor(m_process, milliseconds)) {
    case platform::WaitEnded:
      // Intentional: set first, so that GetExitCode answers even when the exit code cannot be read.
      m_waited = true;
      if (!System::Current().ExitCodeOf(m_process, &m_exitCode)) {
        throw CIllegalArgumentException("jvmlauncher/JavaVmLauncherImplWin", At(97), "GetExitCodeProcess failed.",
                                        nullptr);
      }
      return true;
    case platform::WaitTimeout:
      return false;
    default:
      throw CIllegalArgumentException("jvmlauncher/JavaVmLauncherImplWin", At(92),
                                      "WaitForSignleObjects returned error.", nullptr);  // sic
  }
}

void CJavaVmProcessImp::Kill() { System::Current().EndProcess(m_process, 0); }

void CJavaVmProcessImp::Stop() {
  // Intentional: the process leads no group of its own, so the events reach it only as the consoles have it.
  System::Current().SendConsoleEvent(platform::ControlC, m_processId);
  System::Current().SendConsoleEvent(platform::ControlBreak, m_processId);
}

int CJavaVmProcessImp::GetExitCode() const {
  if (!m_waited) {
    throw CIllegalArgumentException("jvmlauncher/JavaVmLauncherImplWin", At(111), "No Wait called.", nullptr);
  }
  return static_cast<int>(m_exitCode);
}

JavaVmLauncherImpl::JavaVmLauncherImpl(const RX::UniChar* version) {
  if (IsEmpty(version)) {
    throw CIllegalArgumentException("jvmlauncher/JavaVmLauncherImplWin", At(133), "Invalid vm version.", nullptr);
  }
  InstalledJavaVms installed(10, 5);
  if (GetInstalledJavaVms(installed) == 0) {
    throw CJavaVmLauncherException("jvmlauncher/JavaVmLauncherImplWin", At(204),
                                   "There is no installed Java VM on the current system.", nullptr);
  }
  // From the newest down; of equal versions the last in the list.
  unsigned int behind = installed.GetSize();
  while (behind > 0 && !installed[behind - 1].IsCompatibleWith(version)) --behind;
  if (behind == 0) {
    throw CJavaVmLauncherException("jvmlauncher/JavaVmLauncherImplWin", At(217),
                                   "There is no installed Java VM which is compatible with the specified version.",
                                   nullptr);
  }
  // Intentional: discovery looked for the console program, and the windowed one is started unseen.
  CUnicodeStringBuffer command(RenderingCapacity);
  AppendQuoted(command, PathOfProgram(installed[behind - 1].home, platform::WindowedJavaProgram));
  m_command = command.ToString();
}

CRef<CJavaVmProcess> JavaVmLauncherImpl::Launch(const CJavaVmOptions& options, const RX::UniChar* mainClass,
                                                const CArgumentList& arguments) const {
  if (IsEmpty(mainClass) && !HasJarOption(options)) {
    throw CJavaVmLauncherException(
        "jvmlauncher/JavaVmLauncherImplWin", At(159),
        "Java application cannot be launched because neither main class name nor jar option specified.", nullptr);
  }
  // A copy of its own, since the system may write into it.
  const RX::UniString commandLine(RenderCommandLine(options, mainClass, arguments));
  // Everything that needs memory comes before the start: a process that nobody can hold is not started.
  // Of the two objects the outer one's block is taken first, and given back when there is none for the inner one.
  CJavaVmProcessImp* process = nullptr;
  const CRef<CJavaVmProcess> reference(new CJavaVmProcess(process = new CJavaVmProcessImp()));
  if (!process->Start(const_cast<RX::UniChar*>(static_cast<const RX::UniChar*>(commandLine)))) {
    throw CJavaVmLauncherException("jvmlauncher/JavaVmLauncherImplWin", At(186),
                                   "Failed to launch the required Java Vm with the specified vm options and arguments.",
                                   nullptr);
  }
  return reference;
}

CUnicodeString JavaVmLauncherImpl::RenderCommandLine(const CJavaVmOptions& options, const RX::UniChar* mainClass,
                                                     const CArgumentList& arguments) const {
  CUnicodeStringBuffer line(RenderingCapacity);
  line += m_command;
  line += RX_TEXT(' ');
  line += options.RenderCommandLine();
  if (!IsEmpty(mainClass)) {
    line += mainClass;
    line += RX_TEXT(' ');
  }
  line += arguments.RenderCommandLine();
  return line.ToString();
}

}  // namespace torvan::jvmlauncher
