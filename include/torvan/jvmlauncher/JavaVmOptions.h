// A set of launcher options.
#pragma once

#include <mirel/util/ObjectVector.h>
#include <torvan/Export.h>
#include <torvan/jvmlauncher/JavaVmOption.h>

namespace torvan::jvmlauncher {

// The options of a Java VM to start, in the order in which they were added.
// The set owns clones: an option may be changed or destroyed after it was added. Copies are deep. Not safe for use by
// two threads at once. Throws CMemoryException when memory runs out and is then unchanged.
class TORVAN_API CJavaVmOptions {
 public:
  CJavaVmOptions();
  CJavaVmOptions(const CJavaVmOptions& other);
  ~CJavaVmOptions();
  CJavaVmOptions& operator=(const CJavaVmOptions& other);

  // Appends a clone of an option. Equal options may be added any number of times, and all are passed on.
  void AddOption(const CJavaVmOption& option);
  // Removes the first option that equals this one; does nothing when there is none.
  // A failure is printed to mirel::base::CSystem::debugOut and not thrown.
  void RemoveOption(const CJavaVmOption& option);

  unsigned int GetOptionCount() const;
  // Returns an option, which the set owns. Throws CNoSuchElementException when `index` is not below the count.
  const CJavaVmOption& GetOptionAt(unsigned int index) const;

 private:
  friend class JavaVmLauncherImpl;

  mirel::base::CUnicodeString RenderCommandLine() const;
  unsigned int ToArgumentList(CArgumentList& list) const;

  mirel::util::CObjectVector m_options;
};

}  // namespace torvan::jvmlauncher
