// The value that functions with arrays lay under their return address, and the check that it is still there.
#include <stdint.h>

#include "StartUp.h"

extern "C" {

uintptr_t __security_cookie = 0x00002B992DDFA232;

// The compiler calls it with the value found.
void __cdecl __security_check_cookie(uintptr_t cookie) {
  if (cookie != __security_cookie) __builtin_trap();
}
}

void ChooseSecurityCookie() {
  constexpr uintptr_t UpperBitsAreZero = 0x0000FFFFFFFFFFFF;  // text copied over it cannot contain it
  const uintptr_t place = reinterpret_cast<uintptr_t>(&__security_cookie);
  __security_cookie ^= (__builtin_readcyclecounter() * 0x9E3779B97F4A7C15 ^ place) & UpperBitsAreZero;
}
