#include <torvan/jni/options/SystemProperty.h>

#include <mirel/base/At.h>
#include <mirel/base/IllegalArgumentException.h>
#include <mirel/base/UnicodeStringBuffer.h>

#include "EmptyText.h"
#include "SameClass.h"

namespace torvan::jni::options {

using mirel::base::At;
using mirel::base::CClass;
using mirel::base::CIllegalArgumentException;
using mirel::base::CObject;
using mirel::base::CUnicodeString;
using mirel::base::CUnicodeStringBuffer;

namespace {

[[noreturn]] void Fail(unsigned int line, const char* text) {
  throw CIllegalArgumentException("jni/options/SystemProperty", line, text, nullptr);
}

}  // namespace

#define TORVAN_PROPERTY(member, name) \
  const RX::UniChar* const CSystemProperty::member = RX::DefineConstantUTF16CharacterOrString(RX_TEXT(name))
// clang-format off
TORVAN_PROPERTY(ClassPath,              "java.class.path");
TORVAN_PROPERTY(ClassVersion,           "java.class.version");
TORVAN_PROPERTY(Compiler,               "java.compiler");
TORVAN_PROPERTY(ExtDirs,                "java.ext.dirs");
TORVAN_PROPERTY(FileSeparator,          "file.separator");
TORVAN_PROPERTY(Home,                   "java.home");
TORVAN_PROPERTY(IoTmpDir,               "java.io.tmpdir");
TORVAN_PROPERTY(LibraryPath,            "java.library.path");
TORVAN_PROPERTY(LineSeparator,          "line.separator");
TORVAN_PROPERTY(PathSeparator,          "path.separator");
TORVAN_PROPERTY(OsArch,                 "os.arch");
TORVAN_PROPERTY(OsName,                 "os.name");
TORVAN_PROPERTY(OsVersion,              "os.version");
TORVAN_PROPERTY(SpecificationName,      "java.specification.name");
TORVAN_PROPERTY(SpecificationVendor,    "java.specification.vendor");
TORVAN_PROPERTY(SpecificationVersion,   "java.specification.version");
TORVAN_PROPERTY(UserDir,                "user.dir");
TORVAN_PROPERTY(UserName,               "user.name");
TORVAN_PROPERTY(UserHome,               "user.home");
TORVAN_PROPERTY(Vendor,                 "java.vendor");
TORVAN_PROPERTY(VendorUrl,              "java.vendor.url");
TORVAN_PROPERTY(Version,                "java.version");
TORVAN_PROPERTY(VmName,                 "java.vm.name");
TORVAN_PROPERTY(VmSpecificationName,    "java.vm.specification.name");
TORVAN_PROPERTY(VmSpecificationVendor,  "java.vm.specification.vendor");
TORVAN_PROPERTY(VmSpecificationVersion, "java.vm.specification.version");
TORVAN_PROPERTY(VmVendor,               "java.vm.vendor");
TORVAN_PROPERTY(VmVersion,              "java.vm.version");
// clang-format on
#undef TORVAN_PROPERTY

CSystemProperty::CSystemProperty(const RX::UniChar* name, const RX::UniChar* value) {
  if (IsEmpty(name)) Fail(At(94), "Invalid system property name.");
  if (IsEmpty(value)) Fail(At(96), "Invalid system property value.");
  m_name = name;
  m_value = value;
}

CSystemProperty::CSystemProperty(const RX::UniChar* name) {
  if (IsEmpty(name)) Fail(At(77), "Invalid system property name.");
  m_name = name;
}

CSystemProperty::CSystemProperty(const CSystemProperty& other) = default;
CSystemProperty::~CSystemProperty() = default;
CSystemProperty& CSystemProperty::operator=(const CSystemProperty& other) = default;

const CClass* CSystemProperty::GetClass() const { return &m_classCSystemProperty; }

bool CSystemProperty::Equals(const CObject* other) const {
  const CSystemProperty* same = SameClass(*this, other);
  return same != nullptr && m_name == same->m_name && m_value == same->m_value;
}

CObject* CSystemProperty::Clone() const { return new CSystemProperty(*this); }

CUnicodeString CSystemProperty::GetOptionString() const {
  CUnicodeStringBuffer text(32);
  text += RX_TEXT("-D");
  text += m_name;
  text += RX_TEXT('=');
  text += m_value;
  return text.ToString();
}

void* CSystemProperty::GetExtraInfo() const { return nullptr; }

}  // namespace torvan::jni::options
