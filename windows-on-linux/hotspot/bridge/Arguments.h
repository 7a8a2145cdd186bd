// Arguments of Java methods, as a Windows caller passes them.
#pragma once

#include <jni.h>

#include <vector>

namespace hotspot {

// The types of a descriptor's parameters, a letter each: "(I[JLjava/lang/String;)V" gives "ILL".
std::vector<char> ParameterTypes(const char* descriptor);

// Keeps what GetMethodID was asked for; calls name the method by its ID alone.
void RememberMethod(jmethodID method, const char* descriptor);

// The arguments behind a list of Windows, which holds each in 8 bytes. Ends the process when the method's ID did not
// come from this bridge.
class Arguments {
 public:
  Arguments(jmethodID method, __builtin_ms_va_list list);
  const jvalue* Values() const { return m_values.data(); }

 private:
  std::vector<jvalue> m_values;
};

}  // namespace hotspot
