// The heap operators of programs. The libraries have their own, but for arrays that hosts make and delete.
#include <malloc.h>
#include <stdlib.h>

#include <new>

void* operator new(size_t size) {
  if (void* const block = malloc(size == 0 ? 1 : size)) return block;
  abort();
}
void* operator new[](size_t size) { return ::operator new(size); }
void* operator new(size_t size, const std::nothrow_t&) noexcept { return malloc(size == 0 ? 1 : size); }
void* operator new[](size_t size, const std::nothrow_t&) noexcept { return malloc(size == 0 ? 1 : size); }

void operator delete(void* block) noexcept { free(block); }
void operator delete[](void* block) noexcept { free(block); }
void operator delete(void* block, size_t) noexcept { free(block); }
void operator delete[](void* block, size_t) noexcept { free(block); }

void* operator new(size_t size, std::align_val_t alignment) {
  if (void* const block = _aligned_malloc(size == 0 ? 1 : size, static_cast<size_t>(alignment))) return block;
  abort();
}
void operator delete(void* block, size_t, std::align_val_t) noexcept { _aligned_free(block); }
