// An index or key is not in the container.
#pragma once

#include <mirel/base/Exception.h>

namespace mirel::util {

// Thrown when a container does not hold what it is asked for. It has no message.
class MIREL_API CNoSuchElementException : public base::CException {
 public:
  CNoSuchElementException(const char* file, unsigned int line, const char* message, const char* detail) noexcept;
  virtual ~CNoSuchElementException();

  const base::CClass* GetClass() const override;

  static base::CClass m_classCNoSuchElementException;
};

}  // namespace mirel::util
