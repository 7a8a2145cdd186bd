#include <mirel/base/win/WinSystemErrorException.h>

#include <mirel/io/PrintStream.h>

#include "../Decimal.h"

namespace mirel::base::win {

CWinSystemErrorException::CWinSystemErrorException(const char* file, unsigned int line, const char* message,
                                                   const char* detail, unsigned int errorCode) noexcept
    : CException(file, line, message, detail), m_errorCode(errorCode) {}

CWinSystemErrorException::~CWinSystemErrorException() = default;

const CClass* CWinSystemErrorException::GetClass() const { return &m_classCWinSystemErrorException; }

void CWinSystemErrorException::Print(io::CPrintStream& stream) const {
  PrintFacts(stream);
  stream.Print(", system error ");
  stream.PrintLine(Decimal(m_errorCode).GetText());
}

}  // namespace mirel::base::win
