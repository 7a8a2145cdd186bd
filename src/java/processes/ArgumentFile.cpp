#include "java/processes/ArgumentFile.h"

namespace torvan::java::detail {

void AppendToArgumentFile(std::string& file, std::string_view argument) {
  file += '"';
  for (const char byte : argument) {
    switch (byte) {
      case '\n':
        file += "\\n";
        break;
      case '\r':
        file += "\\r";
        break;
      case '"':
      case '\\':
        file += '\\';
        [[fallthrough]];
      default:
        file += byte;
    }
  }
  file += "\"\n";
}

}  // namespace torvan::java::detail
