#include <torvan/jni/options/Verbose.h>

#include <mirel/base/At.h>
#include <mirel/base/IllegalArgumentException.h>
#include <mirel/base/UnicodeStringBuffer.h>

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
  throw CIllegalArgumentException("jni/options/Verbose", line, text, nullptr);
}

constexpr unsigned int ClassLoading = 1;
constexpr unsigned int GarbageCollection = 2;
// Intentional: no flag asks for JNI reports alone; both others together switch them on.
constexpr unsigned int Jni = ClassLoading | GarbageCollection;

}  // namespace

CVerbose::CVerbose(unsigned int flags) : m_flags(flags) {
  if ((m_flags & (ClassLoading | GarbageCollection)) == 0) Fail(At(41), "Invalid verbose flags.");
}

CVerbose::CVerbose(const CVerbose& other) = default;
CVerbose::~CVerbose() = default;
CVerbose& CVerbose::operator=(const CVerbose& other) = default;

const CClass* CVerbose::GetClass() const { return &m_classCVerbose; }

bool CVerbose::Equals(const CObject* other) const {
  const CVerbose* same = SameClass(*this, other);
  return same != nullptr && m_flags == same->m_flags;
}

CObject* CVerbose::Clone() const { return new CVerbose(*this); }

CUnicodeString CVerbose::GetOptionString() const {
  CUnicodeStringBuffer text(32);
  text += RX_TEXT("-verbose:");
  if ((m_flags & ClassLoading) != 0) text += RX_TEXT("class,");
  if ((m_flags & GarbageCollection) != 0) text += RX_TEXT("gc,");
  if ((m_flags & Jni) == Jni) text += RX_TEXT("jni,");
  if (text.EndsWith(RX_TEXT(','))) text.Truncate(text.GetLength() - 1);
  return text.ToString();
}

void* CVerbose::GetExtraInfo() const { return nullptr; }

}  // namespace torvan::jni::options
