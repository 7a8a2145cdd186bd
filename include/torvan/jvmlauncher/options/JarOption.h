// The option -jar.
#pragma once

#include <place/Location.h>
#include <torvan/Export.h>
#include <torvan/jvmlauncher/JavaVmOption.h>

namespace torvan::jvmlauncher::options {

// The jar file whose main class is to run. Immutable.
class TORVAN_API CJarOption : public CJavaVmOption {
 public:
  // Takes a path. Throws CIllegalArgumentException "Invalid jar file path." for null or empty text.
  CJarOption(const RX::UniChar* path);
  // Takes a path. Throws CIllegalArgumentException "Invalid jar file path." when the location has none, and
  // RX::OutOfMemoryException.
  CJarOption(const Place::Location& location);
  CJarOption(const CJarOption& other);
  virtual ~CJarOption();
  CJarOption& operator=(const CJarOption& other);

  const mirel::base::CUnicodeString& GetJarFilePath() const;

  const mirel::base::CClass* GetClass() const override;
  // Compares paths as CUnicodeString::CompareIgnoreCase does, which ignores the case of ASCII and simple Latin, Greek
  // and Cyrillic letters.
  bool Equals(const mirel::base::CObject* other) const override;
  mirel::base::CObject* Clone() const override;

  static mirel::base::CClass m_classCJarOption;

 protected:
  mirel::base::CUnicodeString RenderCommandLine() const override;
  unsigned int ToArgumentList(CArgumentList& list) const override;

 private:
  mirel::base::CUnicodeString m_jarFilePath;
};

}  // namespace torvan::jvmlauncher::options
