// What every header here needs of the compiler that reads it.
#pragma once

// Visual Studio leaves __cplusplus at C++98 unless told otherwise.
#if defined(_MSVC_LANG)
#define RX_LANGUAGE _MSVC_LANG
#else
#define RX_LANGUAGE __cplusplus
#endif
#if RX_LANGUAGE < 201703L
#error "These headers need C++17 or later: compile with /std:c++17 or -std=c++17."
#endif
#undef RX_LANGUAGE

namespace RX {

// What /Zp and -fpack-struct would change in the classes that hosts and libraries share.
struct Packing {
  char first;
  void* second;
};
static_assert(sizeof(Packing) == 2 * sizeof(void*), "structures are packed: compile without /Zp and -fpack-struct");

}  // namespace RX

// Around members and bases of exported classes that are not exported themselves: templates and classes without code,
// compiled into their users. Visual Studio would remark on each at warning levels 1 and 2.
#if defined(_MSC_VER)
#define RX_NOT_EXPORTED_BEGIN __pragma(warning(push)) __pragma(warning(disable : 4251 4275))
#define RX_NOT_EXPORTED_END __pragma(warning(pop))
#else
#define RX_NOT_EXPORTED_BEGIN
#define RX_NOT_EXPORTED_END
#endif
