// The option -D.
#pragma once

#include <place/Location.h>
#include <torvan/Export.h>
#include <torvan/jvmlauncher/JavaVmOption.h>

namespace torvan::jvmlauncher::options {

// A system property of the Java program: -Dname=value. Immutable.
// On the command line a value that contains a space is put in quotes; the name is not.
class TORVAN_API CSystemPropertyOption : public CJavaVmOption {
 public:
  // Throws CIllegalArgumentException "Invalid system property name." when the name is null, empty or contains a space,
  // and "Invalid system property value." when the value is null or empty.
  CSystemPropertyOption(const RX::UniChar* name, const RX::UniChar* value);
  // Takes a path for the value; a location without a path is an invalid value. Also throws RX::OutOfMemoryException.
  CSystemPropertyOption(const RX::UniChar* name, const Place::Location& value);
  CSystemPropertyOption(const CSystemPropertyOption& other);
  virtual ~CSystemPropertyOption();
  CSystemPropertyOption& operator=(const CSystemPropertyOption& other);

  const mirel::base::CUnicodeString& GetPropertyName() const;
  const mirel::base::CUnicodeString& GetPropertyValue() const;

  const mirel::base::CClass* GetClass() const override;
  // Names and values are compared exactly.
  bool Equals(const mirel::base::CObject* other) const override;
  mirel::base::CObject* Clone() const override;

  static mirel::base::CClass m_classCSystemPropertyOption;

 protected:
  mirel::base::CUnicodeString RenderCommandLine() const override;
  unsigned int ToArgumentList(CArgumentList& list) const override;

 private:
  mirel::base::CUnicodeString m_propertyName;
  mirel::base::CUnicodeString m_propertyValue;
};

}  // namespace torvan::jvmlauncher::options
