#include "java/runtimes/Machine.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <system_error>

#include "java/linux/Descriptor.h"

namespace torvan::java::detail {
namespace {

namespace fs = std::filesystem;

bool HasType(const struct stat& status, mode_t type) { return (status.st_mode & S_IFMT) == type; }

bool HasType(const fs::path& path, mode_t type) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 && HasType(status, type);
}

std::string Reason(int error) { return std::generic_category().message(error); }

class LinuxMachine final : public Machine {
 public:
  std::string Root() const override { return {}; }

  std::optional<std::string> Variable(const std::string& name) const override {
    const char* value = std::getenv(name.c_str());
    if (value == nullptr || *value == 0) return std::nullopt;
    return value;
  }

  Location Locate(const fs::path& path) const override {
    const std::unique_ptr<char, void (*)(void*)> real(realpath(path.c_str(), nullptr), std::free);
    if (real == nullptr) return {{}, Reason(errno)};
    return {real.get(), {}};
  }

  bool IsFolder(const fs::path& path) const override { return HasType(path, S_IFDIR); }
  bool IsFile(const fs::path& path) const override { return HasType(path, S_IFREG); }
  std::string Hindrance(const fs::path& path) const override {
    struct stat status;
    const bool isTold = stat(path.c_str(), &status) == 0 || errno == ENOENT || errno == ENOTDIR;
    return isTold ? std::string() : Reason(errno);
  }
  bool IsProgram(const fs::path& path) const override { return IsFile(path) && access(path.c_str(), X_OK) == 0; }

  Listing FoldersIn(const fs::path& folder) const override {
    const std::unique_ptr<DIR, int (*)(DIR*)> opened(opendir(folder.c_str()), closedir);
    if (opened == nullptr) return {{}, Reason(errno)};
    Listing listing;
    for (;;) {
      errno = 0;
      const dirent* const entry = readdir(opened.get());
      if (entry == nullptr) break;
      const std::string name = entry->d_name;
      if (name != "." && name != ".." && IsFolder(folder / name)) listing.names.push_back(name);
    }
    if (errno != 0) listing.reason = Reason(errno);
    std::sort(listing.names.begin(), listing.names.end());
    return listing;
  }

  std::optional<std::string> ReadFront(const fs::path& file, std::size_t bytes) const override {
    // A pipe would wait for its other end.
    const Descriptor opened(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status;
    if (!opened || fstat(opened.Number(), &status) != 0 || !HasType(status, S_IFREG)) return std::nullopt;
    std::string front(bytes, '\0');
    std::size_t size = 0;
    while (size < bytes) {
      const ssize_t count = read(opened.Number(), front.data() + size, bytes - size);
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) return std::nullopt;
      if (count == 0) break;
      size += static_cast<std::size_t>(count);
    }
    front.resize(size);
    return front;
  }

  std::vector<std::string> KeysIn(const std::string&) const override { return {}; }
  std::optional<std::string> RegisteredText(const std::string&, const std::string&) const override {
    return std::nullopt;
  }
};

}  // namespace

const Machine& ThisMachine() {
  static const LinuxMachine s_machine;
  return s_machine;
}

}  // namespace torvan::java::detail
