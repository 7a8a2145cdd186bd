// Counts blocks of the heap. These functions replace the C library's in the whole process, also in the Java VM, and
// call those by their other names.
#include <cstddef>

#include "Bench.h"

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
}

namespace {

thread_local unsigned long t_blocks = 0;

}  // namespace

extern "C" {

void* malloc(std::size_t size) {
  ++t_blocks;
  return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
  ++t_blocks;
  return __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size) {
  ++t_blocks;
  return __libc_realloc(block, size);
}

}  // extern "C"

namespace bench {

unsigned long HeapBlocks() noexcept { return t_blocks; }

}  // namespace bench
