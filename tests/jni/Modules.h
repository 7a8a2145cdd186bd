// What the operating system knows of this program and of the libraries that it loaded.
#pragma once

#include <string>

#include "fakes/WideText.h"

namespace tests {

std::string ProgramPath();
bool IsLoaded(const WideText& path);

}  // namespace tests
