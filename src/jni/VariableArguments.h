// The variable arguments of a function.
#pragma once

#include <cstdarg>

namespace torvan::jni {

// Ends the list of arguments that the variadic function around it started, whichever way that function is left.
// Starting it, `va_start(arguments.list, signature)`, is only possible in the variadic function itself.
struct CArgumentList {
  CArgumentList() = default;
  CArgumentList(const CArgumentList&) = delete;
  CArgumentList& operator=(const CArgumentList&) = delete;
  ~CArgumentList() { va_end(list); }

  va_list list;
};

}  // namespace torvan::jni
