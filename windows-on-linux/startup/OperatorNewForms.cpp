// The other forms of the heap operators, apart so that a program can replace the usual ones alone.
#include <malloc.h>
#include <stdlib.h>

#include <new>

void* operator new[](size_t size) { return ::operator new(size); }
void* operator new[](size_t size, const std::nothrow_t& none) noexcept { return ::operator new(size, none); }

void operator delete[](void* block) noexcept { ::operator delete(block); }
void operator delete[](void* block, size_t) noexcept { ::operator delete(block); }

void* operator new(size_t size, std::align_val_t alignment) {
  if (void* const block = _aligned_malloc(size == 0 ? 1 : size, static_cast<size_t>(alignment))) return block;
  abort();
}
void operator delete(void* block, size_t, std::align_val_t) noexcept { _aligned_free(block); }
