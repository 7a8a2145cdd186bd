// The search for Java runtimes, compared with reading the same files where they are known to be.
#include <dirent.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "Host.h"

namespace bench {
namespace {

namespace fs = std::filesystem;

constexpr int Many = 20;
constexpr const char* LibraryFile = "lib/server/libjvm.so";

// Made-up runtimes where SDKMAN would have them. The search finds those of the machine, too.
class Homes {
 public:
  Homes() : m_folder(fs::temp_directory_path() / ("torvan-bench-" + std::to_string(getpid()))) {
    std::string header(4096, '\0');
    header.replace(0, 7,
                   "\x7F"
                   "ELF\x02\x01\x01");
    header[16] = 3;   // a shared library
    header[18] = 62;  // for x86_64
#if defined(__aarch64__)
    header[18] = '\xB7';
#endif
    for (int i = 0; i < Many; ++i) {
      const fs::path home = Folder() / std::to_string(i);
      fs::create_directories((home / LibraryFile).parent_path());
      fs::create_directories(home / "bin");
      std::ofstream(home / LibraryFile, std::ios::binary) << header;
      for (const char* program : {"java", "javac"}) std::ofstream(home / "bin" / program) << "none";
      std::ofstream(home / "release") << "IMPLEMENTOR=\"Maker\"\nJAVA_RUNTIME_VERSION=\"17.0." << i + 1
                                      << "+9-LTS\"\nJAVA_VERSION=\"17.0." << i + 1 << "\"\nMODULES=\""
                                      << std::string(1500, 'm') << "\"\n";
    }
    setenv("SDKMAN_CANDIDATES_DIR", m_folder.c_str(), 1);
  }
  ~Homes() {
    std::error_code error;
    fs::remove_all(m_folder, error);
  }
  Homes(const Homes&) = delete;
  Homes& operator=(const Homes&) = delete;

  fs::path Folder() const { return m_folder / "java"; }

 private:
  const fs::path m_folder;
};

const Homes& TheHomes() {
  static const Homes s_homes;
  return s_homes;
}

// How much of a file there is, up to so many bytes.
std::size_t ReadBytes(const fs::path& path, char* bytes, std::size_t most) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
  return file == nullptr ? 0 : std::fread(bytes, 1, most, file.get());
}

long ByHand(const std::string& folder) {
  static std::array<char, 16384> bytes;
  const std::unique_ptr<DIR, int (*)(DIR*)> opened(opendir(folder.c_str()), closedir);
  Require(opened != nullptr);
  long found = 0;
  while (const dirent* entry = readdir(opened.get())) {
    const fs::path home = fs::path(folder) / entry->d_name;
    const bool hasLibrary = ReadBytes(home / LibraryFile, bytes.data(), 4096) == 4096;
    found += hasLibrary && ReadBytes(home / "release", bytes.data(), bytes.size()) > 0 ? 1 : 0;
  }
  return found;
}

long Searched(const std::string& folder) {
  long found = 0;
  for (const java::Runtime& runtime : java::FindRuntimes().found) found += runtime.FoundIn() == folder ? 1 : 0;
  return found;
}

}  // namespace

void AddJavaRuntimes() {
  static const std::string folder = TheHomes().Folder().string();
  Row row{"java runtimes",
          "20 runtimes found",
          {Single("the same files read", [](long) { return ByHand(folder); }),
           Single("FindRuntimes", [](long) { return Searched(folder); })}};
  row.isElapsed = true;
  Rows().push_back(std::move(row));
}

}  // namespace bench
