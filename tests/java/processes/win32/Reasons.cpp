#include "java/processes/Reasons.h"

#include <windows.h>

namespace tests {
namespace {

std::string Words(DWORD error) {
  char text[512];
  DWORD size = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0, text,
                              sizeof text, nullptr);
  while (size > 0 && (text[size - 1] <= ' ' || text[size - 1] == '.')) --size;
  return {text, size};
}

}  // namespace

const SystemReasons& Reasons() {
  static const SystemReasons s_reasons = {Words(ERROR_FILE_NOT_FOUND), Words(ERROR_PATH_NOT_FOUND),
                                          Words(ERROR_DIRECTORY), Words(ERROR_BAD_EXE_FORMAT),
                                          Words(ERROR_FILENAME_EXCED_RANGE)};
  return s_reasons;
}

}  // namespace tests
