// The heap operators of programs. The libraries have their own, but for arrays that hosts make and delete. A program
// that has these three itself replaces them, and what calls them.
#include <stdlib.h>

#include <new>

void* operator new(size_t size) {
  if (void* const block = malloc(size == 0 ? 1 : size)) return block;
  abort();
}
void operator delete(void* block) noexcept { free(block); }
void operator delete(void* block, size_t) noexcept { free(block); }
