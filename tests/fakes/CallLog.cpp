#include "fakes/CallLog.h"

namespace tests {

void NoteCall(CallLog& log, const char* name, const std::vector<std::string>& arguments) {
  std::string text = std::string(name) + "(";
  for (std::size_t i = 0; i < arguments.size(); ++i) text += (i == 0 ? "" : ", ") + arguments[i];
  log.push_back(text + ")");
}

}  // namespace tests
