// A Java runtime found and loaded at run time.
#pragma once

#include <rx/Text.h>
#include <torvan/jni/JavaRuntime.h>

namespace torvan::jni {

// A Java runtime whose library is loaded when the handle is made.
// A library is loaded once for each path and shared by all handles. The table of loaded libraries is not synchronised:
// only one thread at a time may create, copy, use or drop runtimes, also those of different libraries (see CJavaVm).
class TORVAN_API CDynamicJavaRuntime : public CJavaRuntime {
 public:
  // Whose registration is looked up.
  enum VmVendor : int { Sun = 0 };

  // Which VM of the runtime is taken: the registered one, or one for which the version must contain "1.3" (classic) or
  // "1.4" (client and server).
  enum VmType : int { Default = 0, Classic = 1, Client = 2, Server = 3 };

  // Loads the runtime library at a path.
  // Throws CIllegalArgumentException "Invalid Java Runtime library path." for null or empty, and CJavaRuntimeException
  // "Java Runtime library not found." or "Invalid Java Runtime libray." (so spelled) when it cannot be loaded or is
  // none.
  CDynamicJavaRuntime(const RX::UniChar* path, jint jniVersion);

  // Finds an installed runtime and loads its library.
  // A null or empty version means the current one. Throws CJavaRuntimeException; its message says whether the vendor,
  // the type, the version or the library was at fault.
  CDynamicJavaRuntime(VmVendor vendor, VmType type, const RX::UniChar* version, jint jniVersion);

  CDynamicJavaRuntime(const CDynamicJavaRuntime& other);
  virtual ~CDynamicJavaRuntime() noexcept(false);
  CDynamicJavaRuntime& operator=(const CDynamicJavaRuntime& other);
};

}  // namespace torvan::jni
