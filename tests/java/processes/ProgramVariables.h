// The environment that a program gets.
#pragma once

#include <string>
#include <vector>

#include "java/processes/Probe.h"

namespace tests {

inline java::Program Bare() { return Probe({}); }

// The program's variables as "NAME=value".
inline std::vector<std::string> Variables(java::Program program) {
  return Split(java::Run(program.Arguments({"environment"})).output, '\0');
}

// The one with this name, or null.
inline const std::string* Find(const std::vector<std::string>& variables, const std::string& name) {
  for (const std::string& variable : variables) {
    if (variable.compare(0, name.size() + 1, name + "=") == 0) return &variable;
  }
  return nullptr;
}

}  // namespace tests
