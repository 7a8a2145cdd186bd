// How this process was started.
#pragma once

#include <string>
#include <vector>

// On Windows the raw command line first; then the arguments after the program's name. All are UTF-8.
std::vector<std::string> Facts(int count, char** arguments);
