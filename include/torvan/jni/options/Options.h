// The start options of a Java VM in this process.
#pragma once

#include <mirel/util/ObjectVector.h>
#include <torvan/Export.h>
#include <torvan/jni/JniTypes.h>
#include <torvan/jni/options/Option.h>

namespace torvan::jni::options {

// The options that a VM is created with, in the order in which they were added.
// The set owns clones: changing an option after it was added does not change the set. Add options with AddOption only,
// which clones them. Copies of a set are independent. Not safe for use by two threads at once while one of them writes.
class TORVAN_API COptions : public mirel::util::CObjectVector {
 public:
  // Constructs an empty set. Throws CMemoryException.
  COptions();
  COptions(const COptions& other);
  ~COptions();
  COptions& operator=(const COptions& other);

  // Appends a clone of an option; the same option may be added several times.
  // Throws CMemoryException and is then unchanged.
  void AddOption(const COption& option);
  // Removes the first option that equals this one; does nothing when there is none.
  // A failure of the comparison or the removal is printed to mirel::base::CSystem::debugOut and not thrown.
  void RemoveOption(const COption& option);

  unsigned int GetOptionCount() const noexcept;
  // Returns the option at `index`, which the set owns. Throws CNoSuchElementException when `index` is not below the
  // count.
  const COption& GetOptionAt(unsigned int index) const;

  // Creates the array that JNI_CreateJavaVM takes: one record for each option, in order, with its text as UTF-8.
  // Pass it to DestroyJniOptions of the same, unchanged set; the extra information in it still belongs to the options.
  // Throws CMemoryException when there is no memory for the array itself.
  // When memory runs out later, the array is released at once and its pointer, now invalid, is returned nevertheless.
  // When an option throws another exception, that is passed on and the array leaks.
  JavaVMOption* CreateJniOptions() const;
  // Releases an array of CreateJniOptions, with as many texts as the set has options now. Null is ignored.
  void DestroyJniOptions(JavaVMOption* options) const;
};

}  // namespace torvan::jni::options
