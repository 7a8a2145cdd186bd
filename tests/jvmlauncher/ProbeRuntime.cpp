#include "jvmlauncher/ProbeRuntime.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <thread>

namespace tests {

namespace fs = std::filesystem;

ProbeRuntime::ProbeRuntime() : m_folder(fs::temp_directory_path() / ("torvan launch " + ProcessName())) {
  for (const char* program : Programs()) {
    fs::create_directories(Home() / "bin");
    fs::copy_file(ProbeProgram(), Home() / "bin" / program, fs::copy_options::overwrite_existing);
  }
  Install();
}

ProbeRuntime::~ProbeRuntime() {
  Uninstall();
  // A program that was killed a moment ago may still hold its file.
  std::error_code error;
  for (int i = 0; i < 100 && (fs::remove_all(m_folder, error), error); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
}

fs::path ProbeRuntime::Program() const { return Home() / "bin" / Programs().back(); }

std::vector<std::string> ReadReport(const fs::path& file) {
  for (int i = 0; i < 400 && !fs::exists(file); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(50));
  std::ifstream stream(file, std::ios::binary);
  EXPECT_TRUE(stream.good()) << file << " was not written";
  std::vector<std::string> texts;
  for (std::string text; std::getline(stream, text, '\0');) texts.push_back(text);
  return texts;
}

}  // namespace tests
