// A folder of one test.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace tests {

// An empty folder, deleted with its contents by the destructor.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    static int s_count = 0;
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    const std::string name = std::string(test->test_suite_name()) + "." + test->name() + std::to_string(s_count++);
    m_path = std::filesystem::temp_directory_path() / "torvan" / name;
    std::filesystem::remove_all(m_path);
    std::filesystem::create_directories(m_path);
    m_path = std::filesystem::canonical(m_path);
  }
  ~TemporaryFolder() { std::filesystem::remove_all(m_path); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string Path(const std::string& name = {}) const {
    return Utf8(name.empty() ? m_path : m_path / std::filesystem::u8path(name));
  }

  // Makes a file, and the folders on its path.
  std::string AddFile(const std::string& name, const std::string& text = {}) const {
    const auto path = m_path / std::filesystem::u8path(name);
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
    return Utf8(path);
  }

 private:
  // From C++20 on, a path's UTF-8 is text of another type.
  static std::string Utf8(const std::filesystem::path& path) {
    const auto text = path.u8string();
    return {text.begin(), text.end()};
  }

  std::filesystem::path m_path;
};

}  // namespace tests
