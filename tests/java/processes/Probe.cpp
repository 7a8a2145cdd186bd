#include "java/processes/Probe.h"

#include <algorithm>
#include <cstdio>
#include <thread>

#if defined(_WIN32)
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace tests {

namespace fs = std::filesystem;

namespace {

#if defined(_WIN32)
fs::path OwnProgram() {
  wchar_t path[MAX_PATH];
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  return path;
}
unsigned long OwnId() { return GetCurrentProcessId(); }
constexpr const char* Suffix = ".exe";
#else
fs::path OwnProgram() { return fs::read_symlink("/proc/self/exe"); }
int OwnId() { return getpid(); }
constexpr const char* Suffix = "";
#endif

struct Home {
  Home() : path(fs::temp_directory_path() / ("java probe " + std::to_string(OwnId()))), owner(OwnId()) {
    fs::create_directories(path / "bin");
    fs::create_directories(path / "empty");
    fs::copy_file(OwnProgram().parent_path() / (std::string("process_probe") + Suffix),
                  path / "bin" / (std::string("java") + Suffix), fs::copy_options::overwrite_existing);
  }
  // A fork of the test program leaves it alone.
  ~Home() {
    std::error_code error;
    if (owner == OwnId()) fs::remove_all(path, error);
  }

  fs::path path;
  decltype(OwnId()) owner;
};

}  // namespace

const fs::path& ProbeHome() {
  static const Home s_home;
  return s_home.path;
}

std::vector<std::string> Split(const std::string& text, char end) {
  std::vector<std::string> parts;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t found = std::min(text.find(end, begin), text.size());
    parts.push_back(text.substr(begin, found - begin));
    begin = found + 1;
  }
  return parts;
}

std::string ReadFile(const fs::path& path) {
  std::string text;
  std::FILE* const file = std::fopen(path.string().c_str(), "rb");
  if (file == nullptr) return text;
  for (int byte; (byte = std::fgetc(file)) != EOF;) text += static_cast<char>(byte);
  std::fclose(file);
  return text;
}

}  // namespace tests
