#include <torvan/jvmlauncher/options/NonStandardOption.h>

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
  throw CIllegalArgumentException("jvmlauncher/options/NonStandardOption", line, text, nullptr);
}

}  // namespace

CNonStandardOption::CNonStandardOption() = default;

CNonStandardOption::CNonStandardOption(const RX::UniChar* option) : m_option(option) {
  if (IsEmpty(option)) Fail(At(42), "Invalid non-standard java vm option.");
}

CNonStandardOption::CNonStandardOption(const CNonStandardOption& other) = default;
CNonStandardOption::~CNonStandardOption() = default;
CNonStandardOption& CNonStandardOption::operator=(const CNonStandardOption& other) = default;

const CUnicodeString& CNonStandardOption::GetOption() const { return m_option; }

const mirel::base::CClass* CNonStandardOption::GetClass() const { return &m_classCNonStandardOption; }

bool CNonStandardOption::Equals(const mirel::base::CObject* other) const {
  const auto* option = SameClass(*this, other);
  return option != nullptr && m_option == option->m_option;
}

mirel::base::CObject* CNonStandardOption::Clone() const { return new CNonStandardOption(*this); }

CUnicodeString CNonStandardOption::RenderCommandLine() const {
  CUnicodeStringBuffer line(RenderingCapacity);
  line += RX_TEXT("-X");
  line += m_option;
  return line.ToString();
}

unsigned int CNonStandardOption::ToArgumentList(CArgumentList& list) const {
  list.Append(RenderCommandLine());
  return 1;
}

}  // namespace torvan::jvmlauncher::options
