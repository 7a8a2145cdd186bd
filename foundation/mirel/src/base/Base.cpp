#include <mirel/base/Base.h>

#include <mirel/base/MemoryException.h>
#include <rx/Memory.h>

namespace mirel::base {

void* CBase::operator new(std::size_t size) {
  void* const block = RX_malloc(size);
  if (block == nullptr) _ThrowMemoryException("mirel/base/Base", __LINE__);
  return block;
}

void CBase::operator delete(void* block) noexcept { RX_free(block); }

void CBase::_ThrowMemoryException(const char* file, unsigned int line) {
  throw CMemoryException(file, line, nullptr, nullptr);
}

}  // namespace mirel::base
