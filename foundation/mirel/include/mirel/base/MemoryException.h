// Memory ran out.
#pragma once

#include <mirel/base/Exception.h>

namespace mirel::base {

// Thrown when a block of memory or a Java object cannot be allocated. It has no message.
class MIREL_API CMemoryException : public CException {
 public:
  CMemoryException(const char* file, unsigned int line, const char* message, const char* detail) noexcept;
  virtual ~CMemoryException();

  const CClass* GetClass() const override;

  static CClass m_classCMemoryException;
};

}  // namespace mirel::base
