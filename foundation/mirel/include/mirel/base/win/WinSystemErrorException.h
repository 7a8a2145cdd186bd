// The operating system reported an error.
#pragma once

#include <mirel/base/Exception.h>

namespace mirel::base::win {

// Thrown when a call of the operating system fails; carries the Windows error code.
class MIREL_API CWinSystemErrorException : public CException {
 public:
  CWinSystemErrorException(const char* file, unsigned int line, const char* message, const char* detail,
                           unsigned int errorCode) noexcept;
  virtual ~CWinSystemErrorException();

  const CClass* GetClass() const override;
  // Prints the line of every exception, with the error code at its end.
  void Print(io::CPrintStream& stream) const override;

  unsigned int GetErrorCode() const noexcept { return m_errorCode; }

  static CClass m_classCWinSystemErrorException;

 private:
  unsigned int m_errorCode;
};

}  // namespace mirel::base::win
