// Arguments of Java methods, as a Windows caller passes them.
#pragma once

#include <jni.h>

#include <vector>

namespace hotspot {

// The types of a descriptor's parameters, a letter each: "ILL" for "(I[JLjava/lang/String;)V".
std::vector<char> ParameterTypes(const char* descriptor);

// Keeps what GetMethodID was asked for; calls name the method by its ID alone.
void RememberMethod(jmethodID method, const char* descriptor);

// The arguments in a va_list of Windows, which has 8 bytes for each. Ends the process when the method's ID did not
// come from this bridge.
class Arguments {
 public:
  Arguments(jmethodID method, __builtin_ms_va_list list);
  const jvalue* Values() const { return m_values.data(); }

 private:
  std::vector<jvalue> m_values;
};

}  // namespace hotspot
