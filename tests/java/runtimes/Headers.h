// Headers of library files.
#pragma once

#include <cstddef>
#include <string>

namespace tests {

inline void Put(std::string& file, std::size_t at, std::size_t size, std::size_t number, bool isLittleEndian = true) {
  for (std::size_t i = 0; i < size; ++i) {
    file[isLittleEndian ? at + i : at + size - 1 - i] = static_cast<char>(number >> 8 * i & 0xFF);
  }
}

// Class 1 has 32 bits and 2 has 64; data 1 is little-endian and 2 big-endian; type 3 is a shared library.
inline std::string ElfHeader(std::size_t machine, char elfClass = 2, char data = 1, std::size_t type = 3) {
  std::string file(64, '\0');
  file.replace(0, 4,
               "\x7F"
               "ELF");
  file[4] = elfClass;
  file[5] = data;
  Put(file, 16, 2, type, data != 2);
  Put(file, 18, 2, machine, data != 2);
  return file;
}

inline std::string PeHeader(std::size_t machine, std::size_t at = 0x80) {
  std::string file(at + 24, '\0');
  file.replace(0, 2, "MZ");
  Put(file, 0x3C, 4, at);
  file.replace(at, 2, "PE");
  Put(file, at + 4, 2, machine);
  return file;
}

}  // namespace tests
