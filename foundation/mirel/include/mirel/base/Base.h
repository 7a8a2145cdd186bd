// The allocation base.
#pragma once

#include <mirel/Export.h>

#include <cstddef>

namespace mirel::base {

// Objects of derived classes live in blocks of the root allocator.
// Any library and the host can therefore delete what another one created. It has no data.
class MIREL_API CBase {
 public:
  // Allocates a block. Throws CMemoryException (no message) when there is no memory.
  static void* operator new(std::size_t size);
  static void operator delete(void* block) noexcept;

  // Constructs in place, as the language's own placement form does.
  static void* operator new(std::size_t, void* place) noexcept { return place; }
  static void operator delete(void*, void*) noexcept {}

  // Throws CMemoryException (no message) for the source file and line given.
  [[noreturn]] static void _ThrowMemoryException(const char* file, unsigned int line);
};

}  // namespace mirel::base
