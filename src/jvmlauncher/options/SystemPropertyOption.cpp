#include <torvan/jvmlauncher/options/SystemPropertyOption.h>

#include <mirel/base/At.h>
#include <mirel/base/IllegalArgumentException.h>
#include <torvan/jvmlauncher/ArgumentList.h>

#include "EmptyText.h"
#include "SameClass.h"
#include "jvmlauncher/Rendering.h"

namespace torvan::jvmlauncher::options {

using mirel::base::At;
using mirel::base::CIllegalArgumentException;
using mirel::base::CUnicodeString;
using mirel::base::CUnicodeStringBuffer;

namespace {

[[noreturn]] void Fail(unsigned int line, const char* text) {
  throw CIllegalArgumentException("jvmlauncher/options/SystemPropertyOption", line, text, nullptr);
}

void AppendUpToValue(CUnicodeStringBuffer& text, const CUnicodeString& name) {
  text += RX_TEXT("-D");
  text += name;
  text += RX_TEXT('=');
}

}  // namespace

CSystemPropertyOption::CSystemPropertyOption(const RX::UniChar* name, const RX::UniChar* value) {
  if (IsEmpty(name)) Fail(At(81), "Invalid system property name.");
  if (IsEmpty(value)) Fail(At(83), "Invalid system property value.");
  m_propertyName = name;
  m_propertyValue = value;
  if (HasSpace(m_propertyName)) Fail(At(89), "Invalid system property name.");
}

CSystemPropertyOption::CSystemPropertyOption(const RX::UniChar* name, const Place::Location& value) {
  RX::UniString path;
  // Intentional: a location without a path is refused before the name is checked.
  if (value.ToPath(path) != 0) Fail(At(106), "Invalid system property value.");
  if (IsEmpty(name)) Fail(At(109), "Invalid system property name.");
  if (IsEmpty(path)) Fail(At(111), "Invalid system property value.");
  m_propertyName = name;
  m_propertyValue = CUnicodeString(path);
  if (HasSpace(m_propertyName)) Fail(At(117), "Invalid system property name.");
}

CSystemPropertyOption::CSystemPropertyOption(const CSystemPropertyOption& other) = default;
CSystemPropertyOption::~CSystemPropertyOption() = default;
CSystemPropertyOption& CSystemPropertyOption::operator=(const CSystemPropertyOption& other) = default;

const CUnicodeString& CSystemPropertyOption::GetPropertyName() const { return m_propertyName; }
const CUnicodeString& CSystemPropertyOption::GetPropertyValue() const { return m_propertyValue; }

const mirel::base::CClass* CSystemPropertyOption::GetClass() const { return &m_classCSystemPropertyOption; }

bool CSystemPropertyOption::Equals(const mirel::base::CObject* other) const {
  const auto* option = SameClass(*this, other);
  return option != nullptr && m_propertyName == option->m_propertyName && m_propertyValue == option->m_propertyValue;
}

mirel::base::CObject* CSystemPropertyOption::Clone() const { return new CSystemPropertyOption(*this); }

CUnicodeString CSystemPropertyOption::RenderCommandLine() const {
  CUnicodeStringBuffer line(RenderingCapacity);
  AppendUpToValue(line, m_propertyName);
  AppendQuoted(line, m_propertyValue);
  return line.ToString();
}

unsigned int CSystemPropertyOption::ToArgumentList(CArgumentList& list) const {
  CUnicodeStringBuffer argument(RenderingCapacity);
  AppendUpToValue(argument, m_propertyName);
  argument += m_propertyValue;
  list.Append(argument.ToString());
  return 1;
}

}  // namespace torvan::jvmlauncher::options
