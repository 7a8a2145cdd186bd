#include <torvan/jvmlauncher/JavaVmOptions.h>

#include <mirel/base/Exception.h>

#include "jvmlauncher/Rendering.h"

namespace torvan::jvmlauncher {

using mirel::base::CUnicodeString;
using mirel::base::CUnicodeStringBuffer;

CJavaVmOptions::CJavaVmOptions() : m_options(2, 2) {}
CJavaVmOptions::CJavaVmOptions(const CJavaVmOptions& other) = default;
CJavaVmOptions::~CJavaVmOptions() = default;
CJavaVmOptions& CJavaVmOptions::operator=(const CJavaVmOptions& other) = default;

void CJavaVmOptions::AddOption(const CJavaVmOption& option) { m_options.Add(option.Clone()); }

void CJavaVmOptions::RemoveOption(const CJavaVmOption& option) {
  try {
    if (m_options.Contains(&option)) m_options.RemoveElement(&option);
  } catch (const mirel::base::CException& exception) {
    mirel::base::PrintToDebugOut(exception);
  }
}

unsigned int CJavaVmOptions::GetOptionCount() const { return m_options.GetSize(); }

const CJavaVmOption& CJavaVmOptions::GetOptionAt(unsigned int index) const {
  return static_cast<const CJavaVmOption&>(m_options[index]);
}

CUnicodeString CJavaVmOptions::RenderCommandLine() const {
  CUnicodeStringBuffer line(RenderingCapacity);
  for (unsigned int i = 0; i < GetOptionCount(); ++i) {
    line += GetOptionAt(i).RenderCommandLine();
    // Intentional: the space follows the last option, too, and even an option that renders as nothing.
    line += RX_TEXT(' ');
  }
  return line.ToString();
}

unsigned int CJavaVmOptions::ToArgumentList(CArgumentList& list) const {
  unsigned int count = 0;
  for (unsigned int i = 0; i < GetOptionCount(); ++i) count += GetOptionAt(i).ToArgumentList(list);
  return count;
}

}  // namespace torvan::jvmlauncher
