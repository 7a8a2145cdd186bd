// The allocation base.
#pragma once

#include <mirel/Export.h>

#include <cstddef>

namespace mirel::base {

// Objects of derived classes live in blocks of the root allocator.
// So every library and host can delete what another one made. It has no data.
class MIREL_API CBase {
 public:
  // Takes a block. Throws CMemoryException (no message) when there is none.
  static void* operator new(std::size_t size);
  static void operator delete(void* block) noexcept;

  // Constructs in place, as the language's own placement form does.
  static void* operator new(std::size_t, void* place) noexcept { return place; }
  static void operator delete(void*, void*) noexcept {}

  // Throws CMemoryException (no message) for the source file and line given.
  [[noreturn]] static void _ThrowMemoryException(const char* file, unsigned int line);
};

}  // namespace mirel::base
