// The runtime libraries that are loaded.
#pragma once

#include <mirel/base/Ref.h>
#include <mirel/util/Hashtable.h>
#include <torvan/jni/DynamicJavaRuntime.h>

#include "jni/JavaRuntimeLibraryRef.h"

namespace torvan::jni {

// Loads every runtime library once and shares it by path, as long as it is used.
// Paths are compared unit by unit: two spellings of one file are two libraries. Used by one thread at a time.
class CJavaRuntimeLibraryPool : public mirel::base::CBase {
 public:
  // Gives the pool of the process, made on first use and destroyed when the code is unloaded.
  static CJavaRuntimeLibraryPool* GetInstance();
  // Tells whether a pool is still there; of one that is gone only the address is looked at.
  static bool IsAlive(const CJavaRuntimeLibraryPool* pool) noexcept { return pool == s_instance; }

  // Gives a use of the library at a path, loading it if need be.
  // Throws CIllegalArgumentException "Invalid Java Runtime library path." for null or empty, CJavaRuntimeException of
  // loading or "Failed to get the specified Java Runtime library.", and CMemoryException. After a failure the pool
  // holds what it held.
  mirel::base::CRef<CJavaRuntimeLibraryRef> Get(const RX::UniChar* path);

  // Gives a use of the library that the registry names, as above; throws also what finding it throws.
  mirel::base::CRef<CJavaRuntimeLibraryRef> Get(CDynamicJavaRuntime::VmVendor vendor, CDynamicJavaRuntime::VmType type,
                                                const RX::UniChar* version);

  // Takes back a use; the last one unloads the library. Only for the reference's destructor.
  // Failures are printed to the debug stream and end here.
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
