// The start options of a Java VM in this process.
#pragma once

#include <mirel/util/ObjectVector.h>
#include <torvan/Export.h>
#include <torvan/jni/JniTypes.h>
#include <torvan/jni/options/Option.h>

namespace torvan::jni::options {

// The options that a VM is created with, in the order in which they were added.
// The set owns clones: what a host does to its own option afterwards does not reach the set. Fill it with AddOption
// alone, which sees to that. Copies are independent. Not safe for use by two threads at once while one of them writes.
class TORVAN_API COptions : public mirel::util::CObjectVector {
 public:
  // Makes an empty set. Throws CMemoryException.
  COptions();
  COptions(const COptions& other);
  ~COptions();
  COptions& operator=(const COptions& other);

  // Appends a clone of an option; the same option may be added several times.
  // Throws CMemoryException and then keeps what it held.
  void AddOption(const COption& option);
  // Removes the first option that equals this one; does nothing when there is none.
  // A failure of the comparison or removal is printed to mirel::base::CSystem::debugOut and goes no further.
  void RemoveOption(const COption& option);

  unsigned int GetOptionCount() const noexcept;
  // Gives the option at `index`, which stays the set's. Throws CNoSuchElementException when `index` is not below the
  // count.
  const COption& GetOptionAt(unsigned int index) const;

  // Makes the array that JNI_CreateJavaVM takes: one record for each option, in order, with the text as UTF-8.
  // The caller gives it back to DestroyJniOptions of the same, unchanged set; the extra information in it stays the
  // options'. Throws CMemoryException when there is no memory for the array itself.
  // When memory runs out later, the array is released at once and its pointer, good for nothing any more, is returned
  // all the same. Exceptions of other kinds that an option throws pass on, and the array is lost.
  JavaVMOption* CreateJniOptions() const;
  // Releases an array made by CreateJniOptions, with as many texts as the set has options now. Null does nothing.
  void DestroyJniOptions(JavaVMOption* options) const;
};

}  // namespace torvan::jni::options
