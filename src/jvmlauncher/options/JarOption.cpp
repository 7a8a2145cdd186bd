#include <torvan/jvmlauncher/options/JarOption.h>

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
  throw CIllegalArgumentException("jvmlauncher/options/JarOption", line, text, nullptr);
}

}  // namespace

CJarOption::CJarOption(const RX::UniChar* path) : m_jarFilePath(path) {
  if (IsEmpty(path)) Fail(At(47), "Invalid jar file path.");
}

// Intentional: the status of the conversion is ignored; what counts is an empty path.
CJarOption::CJarOption(const Place::Location& location) : m_jarFilePath(PathOf(location)) {
  if (IsEmpty(m_jarFilePath)) Fail(At(67), "Invalid jar file path.");
}

CJarOption::CJarOption(const CJarOption& other) = default;
CJarOption::~CJarOption() = default;
CJarOption& CJarOption::operator=(const CJarOption& other) = default;

const CUnicodeString& CJarOption::GetJarFilePath() const { return m_jarFilePath; }

const mirel::base::CClass* CJarOption::GetClass() const { return &m_classCJarOption; }

bool CJarOption::Equals(const mirel::base::CObject* other) const {
  const auto* option = SameClass(*this, other);
  return option != nullptr && m_jarFilePath.CompareIgnoreCase(option->m_jarFilePath) == 0;
}

mirel::base::CObject* CJarOption::Clone() const { return new CJarOption(*this); }

CUnicodeString CJarOption::RenderCommandLine() const {
  CUnicodeStringBuffer line(RenderingCapacity);
  line += RX_TEXT("-jar ");
  AppendQuoted(line, m_jarFilePath);
  return line.ToString();
}

unsigned int CJarOption::ToArgumentList(CArgumentList& list) const {
  list.Append(RX_TEXT("-jar"));
  list.Append(m_jarFilePath);
  return 2;
}

}  // namespace torvan::jvmlauncher::options
