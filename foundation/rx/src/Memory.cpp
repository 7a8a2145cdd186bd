#include <rx/Memory.h>

#include <cstdlib>

namespace {

void* AllocateFromLibrary(std::size_t size) { return std::malloc(size); }
void ReleaseToLibrary(void* block) { std::free(block); }

// Wrappers, not the C library's functions themselves: their addresses are constants, so the allocator works before any
// static initialiser runs.
constexpr RX::Allocator CLibrary = {AllocateFromLibrary, ReleaseToLibrary};

RX::Allocator s_allocator = CLibrary;

}  // namespace

// The C library's functions are called directly where they are the allocator, which is nearly always.
extern "C" void* RX_malloc(std::size_t size) noexcept {
  if (size == 0) size = 1;
  return s_allocator.allocate == AllocateFromLibrary ? std::malloc(size) : s_allocator.allocate(size);
}

extern "C" void RX_free(void* block) noexcept {
  if (block == nullptr) return;
  s_allocator.release == ReleaseToLibrary ? std::free(block) : s_allocator.release(block);
}

namespace RX {

Allocator ReplaceAllocator(const Allocator& allocator) noexcept {
  const Allocator previous = s_allocator;
  s_allocator.allocate = allocator.allocate != nullptr ? allocator.allocate : CLibrary.allocate;
  s_allocator.release = allocator.release != nullptr ? allocator.release : CLibrary.release;
  return previous;
}

}  // namespace RX
