// Raw memory: every block that these libraries allocate or free comes through here.
#pragma once

#include <rx/Export.h>

#include <cstddef>

// Allocates a block of at least `size` bytes, aligned for any object.
// Returns null when there is no memory; never throws. A size of 0 returns a block that can be freed. The caller owns
// the block and frees it with RX_free, on any thread and from any library.
extern "C" RX_API void* RX_malloc(std::size_t size) noexcept;

// Frees a block of RX_malloc. Null is ignored; never throws.
extern "C" RX_API void RX_free(void* block) noexcept;

namespace RX {

// The pair of functions that RX_malloc and RX_free call.
struct Allocator {
  void* (*allocate)(std::size_t size);
  void (*release)(void* block);
};

// Replaces the allocator and returns the previous one, whose members are never null.
// Blocks outlive the change: the new `release` must accept blocks of the old `allocate`. A null member means the C
// library's function. The functions are never called with 0 bytes or with null, and must not throw. Not synchronised
// between threads; throws nothing.
RX_API Allocator ReplaceAllocator(const Allocator& allocator) noexcept;

}  // namespace RX
