// Failures of the launcher.
#pragma once

#include <mirel/base/Exception.h>
#include <torvan/Export.h>

namespace torvan::jvmlauncher {

// Thrown when no suitable Java runtime is installed or a Java process cannot be started.
class TORVAN_API CJavaVmLauncherException : public mirel::base::CException {
 public:
  // Takes the source file (path below the source root, without extension), the line, the message and a further text.
  // The texts are not copied and may be null. Throws nothing.
  CJavaVmLauncherException(const char* file, unsigned int line, const char* message, const char* detail);
  CJavaVmLauncherException(const CJavaVmLauncherException& other);
  virtual ~CJavaVmLauncherException();
  CJavaVmLauncherException& operator=(const CJavaVmLauncherException& other);

  const mirel::base::CClass* GetClass() const override;

  static mirel::base::CClass m_classCJavaVmLauncherException;
};

}  // namespace torvan::jvmlauncher
