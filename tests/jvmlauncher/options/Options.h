// Makes launcher options for tables.
#pragma once

#include <torvan/jvmlauncher/options/ClassPathOption.h>
#include <torvan/jvmlauncher/options/DirectOption.h>
#include <torvan/jvmlauncher/options/JarOption.h>
#include <torvan/jvmlauncher/options/NonStandardOption.h>
#include <torvan/jvmlauncher/options/SystemPropertyOption.h>

#include <memory>
#include <string>
#include <vector>

#include "fakes/WideText.h"

namespace tests {

using Option = std::shared_ptr<torvan::jvmlauncher::CJavaVmOption>;

inline Option ClassPath(const std::vector<std::string>& entries) {
  const auto option = std::make_shared<torvan::jvmlauncher::options::CClassPathOption>();
  for (const std::string& entry : entries) option->AddEntry(Widen(entry).c_str());
  return option;
}
inline Option Jar(const char* path) {
  return std::make_shared<torvan::jvmlauncher::options::CJarOption>(Widen(path).c_str());
}
inline Option NonStandard(const char* text) {
  return std::make_shared<torvan::jvmlauncher::options::CNonStandardOption>(Widen(text).c_str());
}
inline Option Direct(const char* text) {
  return std::make_shared<torvan::jvmlauncher::options::CDirectOption>(Widen(text).c_str());
}
inline Option Property(const char* name, const char* value) {
  return std::make_shared<torvan::jvmlauncher::options::CSystemPropertyOption>(Widen(name).c_str(),
                                                                               Widen(value).c_str());
}

}  // namespace tests
