// A Java system property.
#pragma once

#include <rx/Text.h>
#include <torvan/jni/options/Option.h>

namespace torvan::jni::options {

// A system property that the VM starts with, "-Dname=value".
class TORVAN_API CSystemProperty : public COption {
 public:
  // The names of the properties that every Java runtime has.
  static const RX::UniChar* const ClassPath;
  static const RX::UniChar* const ClassVersion;
  static const RX::UniChar* const Compiler;
  static const RX::UniChar* const ExtDirs;
  static const RX::UniChar* const FileSeparator;
  static const RX::UniChar* const Home;
  static const RX::UniChar* const IoTmpDir;
  static const RX::UniChar* const LibraryPath;
  static const RX::UniChar* const LineSeparator;
  static const RX::UniChar* const PathSeparator;
  static const RX::UniChar* const OsArch;
  static const RX::UniChar* const OsName;
  static const RX::UniChar* const OsVersion;
  static const RX::UniChar* const SpecificationName;
  static const RX::UniChar* const SpecificationVendor;
  static const RX::UniChar* const SpecificationVersion;
  static const RX::UniChar* const UserDir;
  static const RX::UniChar* const UserName;
  static const RX::UniChar* const UserHome;
  static const RX::UniChar* const Vendor;
  static const RX::UniChar* const VendorUrl;
  static const RX::UniChar* const Version;
  static const RX::UniChar* const VmName;
  static const RX::UniChar* const VmSpecificationName;
  static const RX::UniChar* const VmSpecificationVendor;
  static const RX::UniChar* const VmSpecificationVersion;
  static const RX::UniChar* const VmVendor;
  static const RX::UniChar* const VmVersion;

  // Copies name and value.
  // Throws CIllegalArgumentException "Invalid system property name." or "Invalid system property value." when one of
  // them is null or empty (the name is checked first), and CMemoryException.
  CSystemProperty(const RX::UniChar* name, const RX::UniChar* value);
  CSystemProperty(const CSystemProperty& other);
  virtual ~CSystemProperty();
  CSystemProperty& operator=(const CSystemProperty& other);

  const mirel::base::CUnicodeString& GetName() const noexcept { return m_name; }
  const mirel::base::CUnicodeString& GetValue() const noexcept { return m_value; }

  const mirel::base::CClass* GetClass() const override;
  // System properties with the same name and the same value are equal.
  bool Equals(const mirel::base::CObject* other) const override;
  mirel::base::CObject* Clone() const override;
  // Returns for example "-Duser.dir=C:\work".
  mirel::base::CUnicodeString GetOptionString() const override;
  void* GetExtraInfo() const override;

  static mirel::base::CClass m_classCSystemProperty;

 protected:
  // Constructs a property without a value, for classes that keep their value elsewhere.
  // Throws CIllegalArgumentException "Invalid system property name." when the name is null or empty, and
  // CMemoryException.
  CSystemProperty(const RX::UniChar* name);

 private:
  mirel::base::CUnicodeString m_name;
  mirel::base::CUnicodeString m_value;
};

}  // namespace torvan::jni::options
