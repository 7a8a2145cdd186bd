#include "java/OptionChecks.h"

#include <sys/mman.h>

#include <cstddef>

namespace torvan::java::detail {

bool CanReserve(unsigned long long bytes) noexcept {
  constexpr int flags = MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE;
  void* const place = mmap(nullptr, static_cast<std::size_t>(bytes), PROT_NONE, flags, -1, 0);
  if (place == MAP_FAILED) return false;
  munmap(place, static_cast<std::size_t>(bytes));
  return true;
}

}  // namespace torvan::java::detail
