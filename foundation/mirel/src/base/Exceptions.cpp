// The exceptions that add nothing to their base but a class.
#include <mirel/base/IllegalArgumentException.h>
#include <mirel/base/MemoryException.h>
#include <mirel/base/NullReferenceException.h>
#include <mirel/util/NoSuchElementException.h>

namespace mirel::base {

CIllegalArgumentException::CIllegalArgumentException(const char* file, unsigned int line, const char* message,
                                                     const char* detail) noexcept
    : CException(file, line, message, detail) {}
CIllegalArgumentException::~CIllegalArgumentException() = default;
const CClass* CIllegalArgumentException::GetClass() const { return &m_classCIllegalArgumentException; }

CMemoryException::CMemoryException(const char* file, unsigned int line, const char* message,
                                   const char* detail) noexcept
    : CException(file, line, message, detail) {}
CMemoryException::~CMemoryException() = default;
const CClass* CMemoryException::GetClass() const { return &m_classCMemoryException; }

CNullReferenceException::CNullReferenceException(const char* file, unsigned int line, const char* message,
                                                 const char* detail) noexcept
    : CException(file, line, message, detail) {}
CNullReferenceException::~CNullReferenceException() = default;
const CClass* CNullReferenceException::GetClass() const { return &m_classCNullReferenceException; }

}  // namespace mirel::base

namespace mirel::util {

CNoSuchElementException::CNoSuchElementException(const char* file, unsigned int line, const char* message,
                                                 const char* detail) noexcept
    : CException(file, line, message, detail) {}
CNoSuchElementException::~CNoSuchElementException() = default;
const base::CClass* CNoSuchElementException::GetClass() const { return &m_classCNoSuchElementException; }

}  // namespace mirel::util
