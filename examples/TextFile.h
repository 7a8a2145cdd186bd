// Text files that a user names.
#pragma once

#include <filesystem>
#include <fstream>

#include "HostMain.h"

// Opens a file for reading. Throws UserError.
inline std::ifstream OpenText(const Text& path) {
  std::ifstream file{std::filesystem::path(path)};
  if (!file || std::filesystem::is_directory(std::filesystem::path(path))) {
    throw UserError("'" + ToUtf8(path) + "' cannot be read: give the path of a UTF-8 text file");
  }
  return file;
}

// Reads the next line, without its end, as UTF-16. Returns whether there was one.
inline bool ReadLine(std::ifstream& file, Text& line) {
  std::string bytes;
  if (!std::getline(file, bytes)) return false;
  if (!bytes.empty() && bytes.back() == '\r') bytes.pop_back();
  line = FromUtf8(bytes);
  return true;
}
