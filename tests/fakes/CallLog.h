// A log of calls in order, as readable text.
#pragma once

#include <string>
#include <vector>

namespace tests {

using CallLog = std::vector<std::string>;

// Appends "name(argument, argument)".
void NoteCall(CallLog& log, const char* name, const std::vector<std::string>& arguments);

}  // namespace tests
