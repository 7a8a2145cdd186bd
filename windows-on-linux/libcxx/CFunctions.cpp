// Functions that the C library's import library does not name.
#include <stddef.h>
#include <string.h>

#include <cmath>

extern "C" {

wchar_t* __cdecl wmemcpy(wchar_t* target, const wchar_t* source, size_t count) {
  return static_cast<wchar_t*>(memcpy(target, source, count * sizeof(wchar_t)));
}

wchar_t* __cdecl wmemmove(wchar_t* target, const wchar_t* source, size_t count) {
  return static_cast<wchar_t*>(memmove(target, source, count * sizeof(wchar_t)));
}

wchar_t* __cdecl wmemset(wchar_t* target, wchar_t value, size_t count) {
  for (size_t i = 0; i < count; ++i) target[i] = value;
  return target;
}

float __cdecl ceilf(float value) {
  const auto whole = static_cast<float>(static_cast<long long>(value));
  return whole < value ? whole + 1 : whole;
}
}
