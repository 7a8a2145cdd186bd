// Where Java finds native libraries.
#pragma once

#include <torvan/jni/options/PathList.h>

namespace torvan::jni::options {

// The folders that native libraries are loaded from, the property "java.library.path".
class TORVAN_API CLibraryPath : public CPathList {
 public:
  // Constructs an empty library path. Throws CMemoryException.
  CLibraryPath();
  CLibraryPath(const CLibraryPath& other);
  virtual ~CLibraryPath();
  CLibraryPath& operator=(const CLibraryPath& other);

  const mirel::base::CClass* GetClass() const override;
  mirel::base::CObject* Clone() const override;

  static mirel::base::CClass m_classCLibraryPath;
};

}  // namespace torvan::jni::options
