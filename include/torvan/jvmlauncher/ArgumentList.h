// The arguments of a Java program.
#pragma once

#include <mirel/util/UnicodeStringVector.h>
#include <place/Location.h>
#include <torvan/Export.h>

namespace torvan::jvmlauncher {

// The arguments of a Java program, in the order in which they were appended.
// Arguments are kept unchanged. On the command line an argument that contains a space is put in double quotes, and
// nothing is escaped: an argument that contains a double quote, ends with a backslash, or is empty does not reach the
// program unchanged. Not safe for use by two threads at once. Throws CMemoryException when memory runs out.
class TORVAN_API CArgumentList {
 public:
  CArgumentList();
  CArgumentList(const CArgumentList& other);
  ~CArgumentList();
  CArgumentList& operator=(const CArgumentList& other);

  // Appends a copy of zero-terminated text; null counts as empty.
  void Append(const RX::UniChar* argument);
  // Appends a path; a location without a path appends an empty argument. Also throws RX::OutOfMemoryException.
  void Append(const Place::Location& location);
  // Appends all arguments of another list, which may be this one.
  void Append(const CArgumentList& other);

  unsigned int GetArgumentCount() const;
  // Returns an argument, valid until the list changes. Throws CNoSuchElementException when `index` is not below the
  // count.
  const mirel::base::CUnicodeString& GetArgumentAt(unsigned int index) const;

 private:
  friend class JavaVmLauncherImpl;

  mirel::base::CUnicodeString RenderCommandLine() const;

  mirel::util::CUnicodeStringVector m_arguments;
};

}  // namespace torvan::jvmlauncher
