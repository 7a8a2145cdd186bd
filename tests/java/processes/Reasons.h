// Why a program cannot start, in the system's own words.
#pragma once

#include <string>

namespace tests {

struct SystemReasons {
  std::string noFile;
  std::string noWay;      // a file's folder is not there
  std::string noFolder;   // a folder to change to is not there
  std::string noProgram;  // the file is no program
  std::string tooLong;    // the arguments are
};
const SystemReasons& Reasons();

}  // namespace tests
