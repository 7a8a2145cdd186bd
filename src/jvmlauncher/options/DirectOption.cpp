#include <torvan/jvmlauncher/options/DirectOption.h>

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
  throw CIllegalArgumentException("jvmlauncher/options/DirectOption", line, text, nullptr);
}

}  // namespace

CDirectOption::CDirectOption() = default;

CDirectOption::CDirectOption(const RX::UniChar* option) : m_option(option) {
  if (IsEmpty(option)) Fail(At(42), "Invalid direct java vm option.");
}

CDirectOption::CDirectOption(const CDirectOption& other) = default;
CDirectOption::~CDirectOption() = default;
CDirectOption& CDirectOption::operator=(const CDirectOption& other) = default;

const CUnicodeString& CDirectOption::GetOption() const { return m_option; }

const mirel::base::CClass* CDirectOption::GetClass() const { return &m_classCDirectOption; }

bool CDirectOption::Equals(const mirel::base::CObject* other) const {
  const auto* option = SameClass(*this, other);
  return option != nullptr && m_option == option->m_option;
}

mirel::base::CObject* CDirectOption::Clone() const { return new CDirectOption(*this); }

CUnicodeString CDirectOption::RenderCommandLine() const {
  CUnicodeStringBuffer line(RenderingCapacity);
  line += m_option;
  return line.ToString();
}

unsigned int CDirectOption::ToArgumentList(CArgumentList& list) const {
  list.Append(RenderCommandLine());
  return 1;
}

}  // namespace torvan::jvmlauncher::options
