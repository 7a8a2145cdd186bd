// Starts Java programs.
#pragma once

#include <mirel/base/NonCopyable.h>
#include <mirel/base/Ref.h>
#include <torvan/Export.h>
#include <torvan/jvmlauncher/ArgumentList.h>
#include <torvan/jvmlauncher/JavaVmOptions.h>
#include <torvan/jvmlauncher/JavaVmProcess.h>

namespace torvan::jvmlauncher {

class JavaVmLauncherImpl;

RX_NOT_EXPORTED_BEGIN
// Starts Java programs, each in its own process, with the newest installed Java runtime.
// The runtime is chosen once, at construction. A launcher holds no process, so it may be destroyed before the programs
// end. Several threads may launch through one launcher.
class TORVAN_API CJavaVmLauncher : public mirel::base::CBase, public mirel::base::CNonCopyable {
 public:
  // Chooses the newest installed runtime whose version is at or above the given one, for example "1.6" or "17.0".
  // Versions are compared number by number, and fewer numbers are older: 1.6 is older than 1.6.0. What follows an
  // underscore is ignored. Throws CIllegalArgumentException "Invalid vm version." for null or empty text, and
  // CJavaVmLauncherException "There is no installed Java VM on the current system." or "There is no installed Java VM
  // which is compatible with the specified version.".
  CJavaVmLauncher(const RX::UniChar* version);
  ~CJavaVmLauncher();

  // Starts a program and returns at once.
  // The program is the main class ("com.acme.Main"), or the jar of a CJarOption when `mainClass` is null or empty; with
  // both, Java is passed both. It inherits this process's environment and current folder, and no handle. Throws
  // CJavaVmLauncherException "Java application cannot be launched because neither main class name nor jar option
  // specified." or "Failed to launch the required Java Vm with the specified vm options and arguments."; the launcher
  // remains usable. Throws CMemoryException or RX::OutOfMemoryException when memory runs out; nothing was started then.
  mirel::base::CRef<CJavaVmProcess> Launch(const CJavaVmOptions& options, const RX::UniChar* mainClass,
                                           const CArgumentList& arguments);

 private:
  JavaVmLauncherImpl* m_impl;
};
RX_NOT_EXPORTED_END

}  // namespace torvan::jvmlauncher
