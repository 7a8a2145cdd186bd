// The runtime libraries that are loaded.
#pragma once

#include <mirel/base/Ref.h>
#include <mirel/util/Hashtable.h>
#include <torvan/jni/DynamicJavaRuntime.h>

#include "jni/JavaRuntimeLibraryRef.h"

namespace torvan::jni {

// Loads each runtime library once, shares it by path, and unloads it after its last use.
// Paths are compared unit by unit: two spellings of one file are two libraries. Not safe for use by two threads at
// once.
class CJavaRuntimeLibraryPool : public mirel::base::CBase {
 public:
  // Returns the pool of the process, created on first use and destroyed when the code is unloaded.
  static CJavaRuntimeLibraryPool* GetInstance();
  // Tells whether a pool still exists; only the address of a destroyed one is compared.
  static bool IsAlive(const CJavaRuntimeLibraryPool* pool) noexcept { return pool == s_instance; }

  // Returns a use of the library at a path, which is loaded if need be.
  // Throws CIllegalArgumentException "Invalid Java Runtime library path." for null or empty, CJavaRuntimeException of
  // loading or "Failed to get the specified Java Runtime library.", and CMemoryException. After a failure the pool is
  // unchanged.
  mirel::base::CRef<CJavaRuntimeLibraryRef> Get(const RX::UniChar* path);

  // Returns a use of the library that the registry names, as above; also throws when it cannot be found.
  mirel::base::CRef<CJavaRuntimeLibraryRef> Get(CDynamicJavaRuntime::VmVendor vendor, CDynamicJavaRuntime::VmType type,
                                                const RX::UniChar* version);

  // Ends a use; the last one unloads the library. Only for the reference's destructor.
  // Failures are printed to the debug stream and not thrown.
  void Release(CJavaRuntimeLibraryRef& reference);

 private:
  struct Entry {
    mirel::base::CRef<CJavaRuntimeLibraryImpl> library;
    unsigned int useCount = 0;
  };

  CJavaRuntimeLibraryPool();

  mirel::base::CRef<CJavaRuntimeLibraryRef> Share(const mirel::base::CUnicodeString& path);
  mirel::base::CRef<CJavaRuntimeLibraryRef> LoadAndEnter(const mirel::base::CRef<CJavaRuntimeLibraryImpl>& library);
  void GiveBack(CJavaRuntimeLibraryRef& reference);

  static CJavaRuntimeLibraryPool* s_instance;

  mirel::util::CHashtable<mirel::base::CUnicodeString, Entry> m_entries;
};

}  // namespace torvan::jni
