#include <torvan/jvmlauncher/ArgumentList.h>

#include "jvmlauncher/Rendering.h"

namespace torvan::jvmlauncher {

using mirel::base::CUnicodeString;
using mirel::base::CUnicodeStringBuffer;

CArgumentList::CArgumentList() = default;
CArgumentList::CArgumentList(const CArgumentList& other) = default;
CArgumentList::~CArgumentList() = default;
CArgumentList& CArgumentList::operator=(const CArgumentList& other) = default;

void CArgumentList::Append(const RX::UniChar* argument) { m_arguments.Add(argument); }

void CArgumentList::Append(const Place::Location& location) { m_arguments.Add(PathOf(location)); }

void CArgumentList::Append(const CArgumentList& other) {
  // Counted first: the other list may be this one.
  const unsigned int count = other.GetArgumentCount();
  for (unsigned int i = 0; i < count; ++i) m_arguments.Add(other.GetArgumentAt(i));
}

unsigned int CArgumentList::GetArgumentCount() const { return m_arguments.GetSize(); }

const CUnicodeString& CArgumentList::GetArgumentAt(unsigned int index) const { return m_arguments[index]; }

CUnicodeString CArgumentList::RenderCommandLine() const {
  CUnicodeStringBuffer line(RenderingCapacity);
  for (unsigned int i = 0; i < GetArgumentCount(); ++i) {
    AppendQuoted(line, GetArgumentAt(i));
    // Intentional: the space follows the last argument, too; an empty argument leaves only that.
    line += RX_TEXT(' ');
  }
  return line.ToString();
}

}  // namespace torvan::jvmlauncher
