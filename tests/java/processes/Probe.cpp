#include "java/processes/Probe.h"

#include <algorithm>
#include <cstdio>
#include <fstream>

namespace tests {

namespace fs = std::filesystem;

namespace {

struct Home {
  Home() : path(fs::temp_directory_path() / ("java probe " + std::to_string(OwnId()))), owner(OwnId()) {
    fs::remove_all(path);  // of an earlier process with this id, which was killed
    fs::create_directories(path / "bin");
    fs::create_directories(path / "empty");
    fs::copy_file(OwnProgram().parent_path() / OnThisSystem("process_probe.exe", "process_probe"), path / "bin" / Java,
                  fs::copy_options::overwrite_existing);
  }
  // A fork of the test program leaves it alone.
  ~Home() {
    std::error_code error;
    if (owner == OwnId()) fs::remove_all(path, error);
  }

  fs::path path;
  unsigned long owner;
};

}  // namespace

const fs::path& ProbeHome() {
  static const Home s_home;
  return s_home.path;
}

fs::path JavaOf(const fs::path& home) { return home / "bin" / Java; }

fs::path HomeWith(const std::string& name, const std::string& java) {
  const fs::path home = ProbeHome() / name;
  fs::create_directories(home / "bin");
  std::ofstream(JavaOf(home), std::ios::binary) << java;
  fs::permissions(JavaOf(home), fs::perms::owner_all);
  return home;
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

void ExpectHeld(const Held& before, const std::string& moment) {
  Held now{};
  Eventually([&] {
    now = HeldNow();
    return now.threads <= before.threads && now.descriptors == before.descriptors && now.children == before.children;
  });
  EXPECT_LE(now.threads, before.threads) << moment;
  EXPECT_EQ(now.descriptors, before.descriptors) << moment;
  EXPECT_EQ(now.children, before.children) << moment;
}

}  // namespace tests
