#include "java/OptionChecks.h"

#include <windows.h>

namespace torvan::java::detail {

bool CanReserve(unsigned long long bytes) noexcept {
  void* const place = VirtualAlloc(nullptr, static_cast<SIZE_T>(bytes), MEM_RESERVE, PAGE_NOACCESS);
  if (place == nullptr) return false;
  VirtualFree(place, 0, MEM_RELEASE);
  return true;
}

}  // namespace torvan::java::detail
