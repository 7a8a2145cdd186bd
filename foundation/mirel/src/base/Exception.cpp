#include <mirel/base/Exception.h>

#include <mirel/base/System.h>
#include <mirel/io/PrintStream.h>

#include "Decimal.h"

namespace mirel::base {

CException::CException(const char* file, unsigned int line, const char* message, const char* detail) noexcept
    : m_file(file), m_line(line), m_message(message), m_detail(detail) {}

CException::CException(const CException& other) noexcept = default;

CException::~CException() = default;

CException& CException::operator=(const CException& other) noexcept = default;

const CClass* CException::GetClass() const { return &m_classCException; }

void CException::Print(io::CPrintStream& stream) const {
  PrintFacts(stream);
  stream.Print("\n");
}

void CException::PrintFacts(io::CPrintStream& stream) const {
  stream.Print(GetClass()->GetName());
  if (m_message != nullptr) {
    stream.Print(": ");
    stream.Print(m_message);
  }
  if (m_detail != nullptr) {
    stream.Print(" (");
    stream.Print(m_detail);
    stream.Print(")");
  }
  if (m_file != nullptr) {
    stream.Print(" at ");
    stream.Print(m_file);
    stream.Print(":");
    stream.Print(Decimal(m_line).GetText());
  }
}

void PrintToDebugOut(const CException& exception) noexcept {
  try {
    if (CSystem::debugOut != nullptr) exception.Print(*CSystem::debugOut);
  } catch (...) {
    // Must not throw while reporting.
  }
}

}  // namespace mirel::base
