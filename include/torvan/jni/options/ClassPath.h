// Where Java finds classes.
#pragma once

#include <torvan/jni/options/PathList.h>

namespace torvan::jni::options {

// The folders and archives that Java classes are loaded from, the property "java.class.path".
class TORVAN_API CClassPath : public CPathList {
 public:
  // Constructs an empty class path. Throws CMemoryException.
  CClassPath();
  CClassPath(const CClassPath& other);
  virtual ~CClassPath();
  CClassPath& operator=(const CClassPath& other);

  const mirel::base::CClass* GetClass() const override;
  mirel::base::CObject* Clone() const override;

  static mirel::base::CClass m_classCClassPath;
};

}  // namespace torvan::jni::options
