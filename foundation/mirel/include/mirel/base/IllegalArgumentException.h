// An argument is not acceptable.
#pragma once

#include <mirel/base/Exception.h>

namespace mirel::base {

// Thrown when a caller passes an argument that cannot be used; the message says which.
class MIREL_API CIllegalArgumentException : public CException {
 public:
  CIllegalArgumentException(const char* file, unsigned int line, const char* message, const char* detail) noexcept;
  virtual ~CIllegalArgumentException();

  const CClass* GetClass() const override;

  static CClass m_classCIllegalArgumentException;
};

}  // namespace mirel::base
