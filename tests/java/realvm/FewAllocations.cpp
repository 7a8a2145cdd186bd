#include "java/realvm/FewAllocations.h"

#include <cstdlib>
#include <new>

namespace {

constexpr long Never = -1;
thread_local long t_left = Never;
thread_local bool t_haveRunOut = false;

void* Allocate(std::size_t size) {
  if (t_left == 0) {
    t_haveRunOut = true;
    throw std::bad_alloc();
  }
  if (t_left != Never) --t_left;
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

// These replace those of the whole program; the other forms call them.
void* operator new(std::size_t size) { return Allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace tests {

FewAllocations::FewAllocations(long count) noexcept {
  t_haveRunOut = false;
  t_left = count;
}

FewAllocations::~FewAllocations() { t_left = Never; }

bool FewAllocations::HaveRunOut() noexcept { return t_haveRunOut; }

}  // namespace tests
