// The base of the launcher's options.
#pragma once

#include <mirel/base/Object.h>
#include <mirel/base/UnicodeString.h>
#include <torvan/Export.h>

namespace torvan::jvmlauncher {

class CArgumentList;

// One option of a Java VM that is started as another process.
// An option renders itself in two forms: as a piece of a command line, where it adds the quotes it needs, and as
// separate arguments, which are never quoted. An option set keeps clones, so a derived class overrides Clone(), and
// Equals() if it is to be found again. Rendering throws CMemoryException only.
class TORVAN_API CJavaVmOption : public mirel::base::CObject {
 public:
  CJavaVmOption(const CJavaVmOption& other);
  virtual ~CJavaVmOption();
  CJavaVmOption& operator=(const CJavaVmOption& other);

  const mirel::base::CClass* GetClass() const override;

  static mirel::base::CClass m_classCJavaVmOption;

 protected:
  CJavaVmOption();

  // Returns the option as a piece of a command line, without a space after it; may be empty.
  virtual mirel::base::CUnicodeString RenderCommandLine() const = 0;
  // Appends the option's arguments and returns their number.
  virtual unsigned int ToArgumentList(CArgumentList& list) const = 0;

 private:
  friend class CJavaVmOptions;
};

}  // namespace torvan::jvmlauncher
