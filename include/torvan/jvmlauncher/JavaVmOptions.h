// A set of launcher options.
#pragma once

#include <mirel/util/ObjectVector.h>
#include <torvan/Export.h>
#include <torvan/jvmlauncher/JavaVmOption.h>

namespace torvan::jvmlauncher {

// The options of a Java VM to start, in the order in which they were added.
// The set owns clones: options handed in may be changed or destroyed afterwards without effect on it. Copies are deep.
// One thread at a time may use a set. Throws CMemoryException when memory runs out, and then holds what it held.
class TORVAN_API CJavaVmOptions {
 public:
  CJavaVmOptions();
  CJavaVmOptions(const CJavaVmOptions& other);
  ~CJavaVmOptions();
  CJavaVmOptions& operator=(const CJavaVmOptions& other);

  // Appends a clone of an option. Equal options may be added any number of times; each is passed on.
  void AddOption(const CJavaVmOption& option);
  // Removes the first option that equals this one; without one, nothing happens.
  // A failure is printed to mirel::base::CSystem::debugOut and goes no further.
  void RemoveOption(const CJavaVmOption& option);

  unsigned int GetOptionCount() const;
  // Gives an option, which the set goes on owning. Throws CNoSuchElementException when `index` is not below the count.
  const CJavaVmOption& GetOptionAt(unsigned int index) const;

 private:
  friend class JavaVmLauncherImpl;

  mirel::base::CUnicodeString RenderCommandLine() const;
  unsigned int ToArgumentList(CArgumentList& list) const;

  mirel::util::CObjectVector m_options;
};

}  // namespace torvan::jvmlauncher
