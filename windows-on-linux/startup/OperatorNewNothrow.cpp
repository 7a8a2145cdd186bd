// Apart from the other heap operators, so that a program can replace it, or replace them without it.
#include <stdlib.h>

#include <new>

void* operator new(size_t size, const std::nothrow_t&) noexcept { return malloc(size == 0 ? 1 : size); }
