#include "jvmlauncher/JavaVmLauncherImplWin.h"

#include <mirel/base/At.h>
#include <mirel/base/IllegalArgumentException.h>
#include <rx/UniString.h>
#include <torvan/JavaVmLauncherException.h>
#include <torvan/jvmlauncher/options/JarOption.h>

#include "EmptyText.h"
#include "jvmlauncher/InstalledJavaVm.h"
#include "jvmlauncher/Rendering.h"
#include "platform/Conventions.h"

namespace torvan::jvmlauncher {

using mirel::base::At;
using mirel::base::CIllegalArgumentException;
using mirel::base::CRef;
using mirel::base::CUnicodeString;
using mirel::base::CUnicodeStringBuffer;
using platform::System;

namespace {

[[noreturn]] void Refuse(unsigned int line, const char* text) {
  throw CIllegalArgumentException("jvmlauncher/JavaVmLauncherImplWin", line, text, nullptr);
}
[[noreturn]] void Fail(unsigned int line, const char* text) {
  throw CJavaVmLauncherException("jvmlauncher/JavaVmLauncherImplWin", line, text, nullptr);
}

bool HasJarOption(const CJavaVmOptions& options) {
  for (unsigned int i = 0; i < options.GetOptionCount(); ++i) {
    if (options.GetOptionAt(i).IsInstanceOf(&options::CJarOption::m_classCJarOption)) return true;
  }
  return false;
}

// Returns a process object that owns the implementation. Without memory for the object the implementation is deleted.
CJavaVmProcess* Wrap(CJavaVmProcessImp* implementation) {
  try {
    return new CJavaVmProcess(implementation);
  } catch (...) {
    delete implementation;
    throw;
  }
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
      if (!System::Current().ExitCodeOf(m_process, &m_exitCode)) Refuse(At(97), "GetExitCodeProcess failed.");
      return true;
    case platform::WaitTimeout:
      return false;
    default:
      Refuse(At(92), "WaitForSignleObjects returned error.");  // sic
  }
}

void CJavaVmProcessImp::Kill() { System::Current().EndProcess(m_process, 0); }

void CJavaVmProcessImp::Stop() {
  // Intentional: not started in a new process group, so the events reach it only through a console that it shares.
  System::Current().SendConsoleEvent(platform::ControlC, m_processId);
  System::Current().SendConsoleEvent(platform::ControlBreak, m_processId);
}

int CJavaVmProcessImp::GetExitCode() const {
  if (!m_waited) Refuse(At(111), "No Wait called.");
  return static_cast<int>(m_exitCode);
}

JavaVmLauncherImpl::JavaVmLauncherImpl(const RX::UniChar* version) {
  if (IsEmpty(version)) Refuse(At(133), "Invalid vm version.");
  InstalledJavaVms installed(10, 5);
  if (GetInstalledJavaVms(installed) == 0) Fail(At(204), "There is no installed Java VM on the current system.");
  // From the newest down; of equal versions the last in the list.
  unsigned int count = installed.GetSize();
  while (count > 0 && !installed[count - 1].IsCompatibleWith(version)) --count;
  if (count == 0) Fail(At(217), "There is no installed Java VM which is compatible with the specified version.");
  // Intentional: the list was checked for the console program; the windowed one is started unchecked.
  CUnicodeStringBuffer command(RenderingCapacity);
  AppendQuoted(command, PathOfProgram(installed[count - 1].home, platform::WindowedJavaProgram));
  m_command = command.ToString();
}

CRef<CJavaVmProcess> JavaVmLauncherImpl::Launch(const CJavaVmOptions& options, const RX::UniChar* mainClass,
                                                const CArgumentList& arguments) const {
  if (IsEmpty(mainClass) && !HasJarOption(options))
    Fail(At(159), "Java application cannot be launched because neither main class name nor jar option specified.");
  // A copy, because the system may write into it.
  const RX::UniString commandLine(RenderCommandLine(options, mainClass, arguments));
  // All memory is allocated before the start: a process that no object holds must not be started.
  auto* const implementation = new CJavaVmProcessImp();
  const CRef<CJavaVmProcess> process(Wrap(implementation));
  if (!implementation->Start(const_cast<RX::UniChar*>(static_cast<const RX::UniChar*>(commandLine))))
    Fail(At(186), "Failed to launch the required Java Vm with the specified vm options and arguments.");
  return process;
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
