// Arguments, written for an argument file and for a Windows command line, are read back as they were.
#include <string>
#include <vector>

#include "fuzz/Fuzz.h"
#include "java/processes/ArgumentFile.h"
#include "java/processes/ArgumentFileReader.h"
#include "java/processes/Quoting.h"

using tests::Require;

namespace {

// By the rules of the C runtime, for a line that begins with an argument.
std::vector<std::string> SplitLine(const std::string& line) {
  std::vector<std::string> arguments;
  bool isQuoted = false;
  bool isBegun = false;
  for (std::size_t i = 0; i < line.size();) {
    const std::size_t first = i;
    while (i < line.size() && line[i] == '\\') ++i;
    const std::size_t backslashes = i - first;
    const bool isBlank = i < line.size() && (line[i] == ' ' || line[i] == '\t');
    if (!isBegun && (backslashes > 0 || !isBlank)) {
      arguments.emplace_back();
      isBegun = true;
    }
    if (i < line.size() && line[i] == '"') {
      arguments.back().append(backslashes / 2, '\\');
      if (backslashes % 2 != 0) {
        arguments.back() += '"';
      } else {
        isQuoted = !isQuoted;
      }
      ++i;
    } else {
      if (isBegun) arguments.back().append(backslashes, '\\');
      if (i == line.size()) break;
      if (isBlank && !isQuoted) {
        isBegun = false;
      } else {
        arguments.back() += line[i];
      }
      ++i;
    }
  }
  return arguments;
}

}  // namespace

int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  std::vector<std::string> arguments(1);
  for (const char byte : tests::Input(data, size)) {
    if (byte == '\0') {
      arguments.emplace_back();
    } else {
      arguments.back() += byte;
    }
  }
  std::string file;
  std::string line;
  for (const std::string& argument : arguments) {
    torvan::java::detail::AppendToArgumentFile(file, argument);
    torvan::java::detail::AppendQuoted(line, argument);
  }
  Require(tests::ReadArgumentFile(file) == arguments, "an argument file returns what was written");
  Require(SplitLine(line) == arguments, "a command line returns what was quoted");
  return 0;
}
