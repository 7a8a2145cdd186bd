// The variable arguments of a function.
#pragma once

#include <cstdarg>

namespace torvan::jni {

// Ends the list of arguments that the enclosing variadic function started, however that function is left.
// The list must be started in the variadic function itself: `va_start(arguments.list, signature)`. Ending it there,
// too, would take a try block in each of more than 60 functions; va_end does nothing on the systems supported.
struct CVariableArguments {
  CVariableArguments() = default;
  CVariableArguments(const CVariableArguments&) = delete;
  CVariableArguments& operator=(const CVariableArguments&) = delete;
  ~CVariableArguments() { va_end(list); }

  va_list list;
};

}  // namespace torvan::jni
