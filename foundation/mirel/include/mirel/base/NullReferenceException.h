// A null reference was used.
#pragma once

#include <mirel/base/Exception.h>

namespace mirel::base {

// Thrown when an empty reference or a null handle is asked for its object. It has no message.
class MIREL_API CNullReferenceException : public CException {
 public:
  CNullReferenceException(const char* file, unsigned int line, const char* message, const char* detail) noexcept;
  virtual ~CNullReferenceException();

  const CClass* GetClass() const override;

  static CClass m_classCNullReferenceException;
};

}  // namespace mirel::base
