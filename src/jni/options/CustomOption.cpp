#include <torvan/jni/options/CustomOption.h>

#include <mirel/base/At.h>
#include <mirel/base/IllegalArgumentException.h>

#include "EmptyText.h"
#include "SameClass.h"

namespace torvan::jni::options {

using mirel::base::At;
using mirel::base::CClass;
using mirel::base::CIllegalArgumentException;
using mirel::base::CObject;
using mirel::base::CUnicodeString;

namespace {

[[noreturn]] void Fail(unsigned int line, const char* text) {
  throw CIllegalArgumentException("jni/options/CustomOption", line, text, nullptr);
}

}  // namespace

CCustomOption::CCustomOption(const RX::UniChar* value) {
  if (IsEmpty(value)) Fail(At(42), "Invalid custom option value.");
  m_value = value;
}

CCustomOption::CCustomOption(const CCustomOption& other) = default;
CCustomOption::~CCustomOption() = default;
CCustomOption& CCustomOption::operator=(const CCustomOption& other) = default;

const CClass* CCustomOption::GetClass() const { return &m_classCCustomOption; }

bool CCustomOption::Equals(const CObject* other) const {
  const CCustomOption* same = SameClass(*this, other);
  return same != nullptr && m_value == same->m_value;
}

CObject* CCustomOption::Clone() const { return new CCustomOption(*this); }

CUnicodeString CCustomOption::GetOptionString() const { return m_value; }

void* CCustomOption::GetExtraInfo() const { return nullptr; }

}  // namespace torvan::jni::options
