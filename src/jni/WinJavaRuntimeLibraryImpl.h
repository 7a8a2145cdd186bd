// A Java runtime library, found in the registry or at a path.
#pragma once

#include <torvan/jni/DynamicJavaRuntime.h>

#include "jni/JavaRuntimeLibraryImpl.h"
#include "platform/System.h"

namespace torvan::jni {

// Construction only finds the path; nothing is loaded and no file touched before Load().
class CWinJavaRuntimeLibraryImpl : public CJavaRuntimeLibraryImpl {
 public:
  // Takes the library's path. Throws CIllegalArgumentException "Invalid Java Runtime path." for null or empty.
  explicit CWinJavaRuntimeLibraryImpl(const RX::UniChar* path);

  // Finds the library of an installed runtime; a null or empty version means the current one.
  // Throws CJavaRuntimeException; its message says whether the vendor, the type or the version was at fault.
  CWinJavaRuntimeLibraryImpl(CDynamicJavaRuntime::VmVendor vendor, CDynamicJavaRuntime::VmType type,
                             const RX::UniChar* version);

  ~CWinJavaRuntimeLibraryImpl() override;

  // Throws CJavaRuntimeException "Java Runtime library not found." or "Invalid Java Runtime libray." (so spelled).
  // After the second the library stays loaded, without the missing entry points.
  void Load() override;
  void Unload() override;

  // Throws CJavaRuntimeException "Invalid Java Runtime library." without the entry point.
  jint CreateJavaVm(JavaVM** vm, void** env, void* initArgs) override;
  // Throws CJavaRuntimeException "Inavalid Java Runtime library." (so spelled) without the entry point.
  jint GetCreatedJavaVms(JavaVM** buffer, jsize bufferLength, jsize* count) override;

 private:
  using CreateJavaVmFunction = jint(JNICALL*)(JavaVM**, void**, void*);
  using GetCreatedJavaVmsFunction = jint(JNICALL*)(JavaVM**, jsize, jsize*);

  platform::Module m_module = nullptr;
  CreateJavaVmFunction m_createJavaVm = nullptr;
  GetCreatedJavaVmsFunction m_getCreatedJavaVms = nullptr;
};

}  // namespace torvan::jni
