// One ordered log of readable calls.
#pragma once

#include <string>
#include <vector>

namespace tests {

using CallLog = std::vector<std::string>;

// Appends "name(argument, argument)".
void NoteCall(CallLog& log, const char* name, const std::vector<std::string>& arguments);

}  // namespace tests
