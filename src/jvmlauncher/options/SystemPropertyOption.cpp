#include <mirel/base/At.h>
#include <mirel/base/IllegalArgumentException.h>
#include <torvan/jvmlauncher/ArgumentList.h>
#include <torvan/jvmlauncher/options/SystemPropertyOption.h>

#include "SameClass.h"
#include "Text.h"
#include "jvmlauncher/options/Rendering.h"

namespace torvan::jvmlauncher::options {

using mirel::base::At;
using mirel::base::CIllegalArgumentException;
using mirel::base::CUnicodeString;
using mirel::base::CUnicodeStringBuffer;

namespace {

void AppendUpToValue(CUnicodeStringBuffer& text, const CUnicodeString& name) {
  text += RX_TEXT("-D");
  text += name;
  text += RX_TEXT('=');
}

}  // namespace

CSystemPropertyOption::CSystemPropertyOption(const RX::UniChar* name, const RX::UniChar* value) {
  if (IsEmpty(name)) {
    throw CIllegalArgumentException("jvmlauncher/options/SystemPropertyOption", At(81), "Invalid system property name.",
                                    nullptr);
  }
  if (IsEmpty(value)) {
    throw CIllegalArgumentException("jvmlauncher/options/SystemPropertyOption", At(83),
                                    "Invalid system property value.", nullptr);
  }
  m_propertyName = name;
  m_propertyValue = value;
  if (HasSpace(m_propertyName)) {
    throw CIllegalArgumentException("jvmlauncher/options/SystemPropertyOption", At(89), "Invalid system property name.",
                                    nullptr);
  }
}

CSystemPropertyOption::CSystemPropertyOption(const RX::UniChar* name, const Place::Location& value) {
  RX::UniString path;
  // Intentional: a location that cannot be turned into a path is refused before the name is looked at.
  if (value.ToPath(path) != 0) {
    throw CIllegalArgumentException("jvmlauncher/options/SystemPropertyOption", At(106),
                                    "Invalid system property value.", nullptr);
  }
  if (IsEmpty(name)) {
    throw CIllegalArgumentException("jvmlauncher/options/SystemPropertyOption", At(109),
                                    "Invalid system property name.", nullptr);
  }
  if (IsEmpty(path)) {
    throw CIllegalArgumentException("jvmlauncher/options/SystemPropertyOption", At(111),
                                    "Invalid system property value.", nullptr);
  }
  m_propertyName = name;
  m_propertyValue = CUnicodeString(path);
  if (HasSpace(m_propertyName)) {
    throw CIllegalArgumentException("jvmlauncher/options/SystemPropertyOption", At(117),
                                    "Invalid system property name.", nullptr);
  }
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
