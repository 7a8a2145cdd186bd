// A system property that is a list of paths.
#pragma once

#include <mirel/util/UnicodeStringVector.h>
#include <torvan/jni/options/SystemProperty.h>

namespace torvan::jni::options {

// The base of the system properties whose value is a list of paths.
// GetValue() of a path list is empty: GetPathAt() returns the paths, GetOptionString() the whole.
class TORVAN_API CPathList : public CSystemProperty {
 public:
  CPathList(const CPathList& other);
  virtual ~CPathList();
  CPathList& operator=(const CPathList& other);

  // Appends a path unchanged and unchecked. Throws CMemoryException and is then unchanged.
  void AddPath(const RX::UniChar* path);
  unsigned int GetPathCount() const noexcept;
  // Throws CNoSuchElementException when `index` is not below the count.
  const mirel::base::CUnicodeString& GetPathAt(unsigned int index) const;

  const mirel::base::CClass* GetClass() const override;
  // Path lists of the same class are equal when they have the same name and the same paths in the same order.
  bool Equals(const mirel::base::CObject* other) const override;
  // Returns for example "-Djava.class.path=a.jar;b.jar;": the system's path-list separator follows every path, the last
  // one included. The text of an empty list is empty.
  mirel::base::CUnicodeString GetOptionString() const override;

  static mirel::base::CClass m_classCPathList;

 protected:
  // Constructs an empty list. Throws CIllegalArgumentException "Invalid system property name." when the name is null or
  // empty, and CMemoryException.
  CPathList(const RX::UniChar* name);

 private:
  mirel::util::CUnicodeStringVector m_paths;
};

}  // namespace torvan::jni::options
