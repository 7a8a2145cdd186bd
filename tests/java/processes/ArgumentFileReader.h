// Reads an argument file by the rules that the java launcher documents.
#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tests {

// Blanks separate arguments; quotes keep blanks; a backslash between quotes escapes; "#" begins a comment; a line's end
// ends an argument, between quotes too.
inline std::vector<std::string> ReadArgumentFile(std::string_view file) {
  std::vector<std::string> arguments;
  std::optional<std::string> argument;
  char quote = '\0';
  const auto end = [&] {
    if (argument) arguments.push_back(*argument);
    argument.reset();
    quote = '\0';
  };
  for (std::size_t i = 0; i < file.size(); ++i) {
    const char byte = file[i];
    const bool isLineEnd = byte == '\n' || byte == '\r';
    if (isLineEnd || (quote == '\0' && (byte == ' ' || byte == '\t' || byte == '\f'))) {
      end();
    } else if (quote == '\0' && !argument && byte == '#') {
      i = std::min(file.find_first_of("\r\n", i), file.size());
    } else if (quote == '\0' && (byte == '"' || byte == '\'')) {
      quote = byte;
      if (!argument) argument.emplace();
    } else if (byte == quote) {
      quote = '\0';
    } else if (quote != '\0' && byte == '\\' && i + 1 < file.size()) {
      const char escaped = file[++i];
      const std::size_t letter = std::string_view("nrtf").find(escaped);
      *argument += letter != std::string_view::npos ? "\n\r\t\f"[letter] : escaped;
    } else {
      if (!argument) argument.emplace();
      *argument += byte;
    }
  }
  end();
  return arguments;
}

}  // namespace tests
