// Which methods of an interface C++ functions are for.
#pragma once

#include <torvan/java/detail/Callback.h>

#include <string>
#include <vector>

#include "java/Reflection.h"

namespace torvan::java::detail {

// The method of a function. References are local ones.
struct MatchedMethod {
  Candidate method;
  std::string name;                 // with its class and types, for messages
  std::string letters;              // of the C++ types: the result, then the arguments
  std::vector<Local<Class>> tests;  // of each argument, null where Java's class says enough
  bool hasTests;
};

// Finds the method of a function in an interface, whose loader, or the kept one for null, has the classes of the C++
// types. Throws Misuse where none fits or several do, and Error.
MatchedMethod FindMethod(JNIEnv* env, jclass type, jobject loader, const GivenFunction& function);

}  // namespace torvan::java::detail
