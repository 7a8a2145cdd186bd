#include <torvan/jvmlauncher/options/ClassPathOption.h>

#include <torvan/jvmlauncher/ArgumentList.h>

#include "SameClass.h"
#include "jvmlauncher/Rendering.h"
#include "platform/Conventions.h"

namespace torvan::jvmlauncher::options {

using mirel::base::CUnicodeString;
using mirel::base::CUnicodeStringBuffer;
using mirel::util::CUnicodeStringVector;

namespace {

// Intentional: the separator follows the last entry, too; Java ignores it.
void AppendEntries(CUnicodeStringBuffer& text, const CUnicodeStringVector& entries) {
  for (unsigned int i = 0; i < entries.GetSize(); ++i) {
    text += entries[i];
    text += platform::PathListSeparator;
  }
}

bool HasEntryWithSpace(const CUnicodeStringVector& entries) {
  unsigned int i = 0;
  while (i < entries.GetSize() && !HasSpace(entries[i])) ++i;
  return i < entries.GetSize();
}

}  // namespace

CClassPathOption::CClassPathOption() = default;
CClassPathOption::CClassPathOption(const CClassPathOption& other) = default;
CClassPathOption::~CClassPathOption() = default;
CClassPathOption& CClassPathOption::operator=(const CClassPathOption& other) = default;

void CClassPathOption::AddEntry(const RX::UniChar* entry) { m_entries.Add(entry); }
void CClassPathOption::AddEntry(const Place::Location& location) { m_entries.Add(PathOf(location)); }

unsigned int CClassPathOption::GetEntryCount() const { return m_entries.GetSize(); }
const CUnicodeString& CClassPathOption::GetEntryAt(unsigned int index) const { return m_entries[index]; }

const mirel::base::CClass* CClassPathOption::GetClass() const { return &m_classCClassPathOption; }

bool CClassPathOption::Equals(const mirel::base::CObject* other) const {
  const auto* option = SameClass(*this, other);
  if (option == nullptr || option->GetEntryCount() != GetEntryCount()) return false;
  for (unsigned int i = 0; i < GetEntryCount(); ++i) {
    if (GetEntryAt(i).CompareIgnoreCase(option->GetEntryAt(i)) != 0) return false;
  }
  return true;
}

mirel::base::CObject* CClassPathOption::Clone() const { return new CClassPathOption(*this); }

CUnicodeString CClassPathOption::RenderCommandLine() const {
  CUnicodeStringBuffer line(RenderingCapacity);
  if (GetEntryCount() == 0) return line.ToString();
  const bool quoted = HasEntryWithSpace(m_entries);
  line += RX_TEXT("-cp ");
  if (quoted) line += RX_TEXT('"');
  AppendEntries(line, m_entries);
  if (quoted) line += RX_TEXT('"');
  return line.ToString();
}

unsigned int CClassPathOption::ToArgumentList(CArgumentList& list) const {
  if (GetEntryCount() == 0) return 0;
  CUnicodeStringBuffer path(RenderingCapacity);
  AppendEntries(path, m_entries);
  list.Append(RX_TEXT("-cp"));
  list.Append(path.ToString());
  return 2;
}

}  // namespace torvan::jvmlauncher::options
