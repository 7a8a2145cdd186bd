// The option -cp.
#pragma once

#include <mirel/util/UnicodeStringVector.h>
#include <place/Location.h>
#include <torvan/Export.h>
#include <torvan/jvmlauncher/JavaVmOption.h>

namespace torvan::jvmlauncher::options {

// The class path: folders, jar files and wildcards, in search order.
// The system's path-list separator (";" on Windows, ":" on Linux) follows each entry, the last one included. An option
// without entries renders as nothing. Throws CMemoryException when memory runs out.
class TORVAN_API CClassPathOption : public CJavaVmOption {
 public:
  CClassPathOption();
  CClassPathOption(const CClassPathOption& other);
  virtual ~CClassPathOption();
  CClassPathOption& operator=(const CClassPathOption& other);

  // Appends an entry unchanged and unchecked; null counts as empty.
  void AddEntry(const RX::UniChar* entry);
  // Appends a path; a location without a path appends an empty entry. Also throws RX::OutOfMemoryException.
  void AddEntry(const Place::Location& location);

  unsigned int GetEntryCount() const;
  // Returns an entry, valid until the option changes. Throws CNoSuchElementException when `index` is not below the
  // count.
  const mirel::base::CUnicodeString& GetEntryAt(unsigned int index) const;

  const mirel::base::CClass* GetClass() const override;
  // Compares the entries in order as CUnicodeString::CompareIgnoreCase does, which ignores the case of ASCII and simple
  // Latin, Greek and Cyrillic letters.
  bool Equals(const mirel::base::CObject* other) const override;
  mirel::base::CObject* Clone() const override;

  static mirel::base::CClass m_classCClassPathOption;

 protected:
  mirel::base::CUnicodeString RenderCommandLine() const override;
  unsigned int ToArgumentList(CArgumentList& list) const override;

 private:
  mirel::util::CUnicodeStringVector m_entries;
};

}  // namespace torvan::jvmlauncher::options
