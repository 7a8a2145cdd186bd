// Raw memory: every block that these libraries take or give back passes here.
#pragma once

#include <rx/Export.h>

#include <cstddef>

// Takes a block of at least `size` bytes, aligned for any object.
// Returns null when there is none; never throws. A size of 0 gives a block that can be freed. The caller owns the block
// and gives it back with RX_free, in any thread and from any library.
extern "C" RX_API void* RX_malloc(std::size_t size) noexcept;

// Gives back a block of RX_malloc. Null does nothing; never throws.
extern "C" RX_API void RX_free(void* block) noexcept;

namespace RX {

// The pair of functions that RX_malloc and RX_free stand on.
struct Allocator {
  void* (*allocate)(std::size_t size);
  void (*release)(void* block);
};

// Replaces the allocator and gives the one in force until now, whose members are never null.
// Blocks outlive the change: the new `release` must accept blocks of the old `allocate`. Null members stand for the
// C library's functions. The functions are never asked for 0 bytes nor given null, and must not throw. Not guarded
// against other threads; throws nothing.
RX_API Allocator ReplaceAllocator(const Allocator& allocator) noexcept;

}  // namespace RX
