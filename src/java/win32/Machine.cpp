#include "java/runtimes/Machine.h"

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "java/PathText.h"
#include "java/processes/Surroundings.h"
#include "java/win32/Handle.h"

namespace torvan::java::detail {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t LongestName = 32767;  // of an environment variable's value and of a path, by the system

std::wstring Wide(const std::string& text) { return ToPath(text).wstring(); }
std::string Narrow(const std::wstring& units) { return ToText(fs::path(units)); }

struct EndSearch {
  void operator()(HANDLE search) const { FindClose(search); }
};
using FileSearch = std::unique_ptr<void, EndSearch>;

struct CloseKeyOf {
  void operator()(HKEY key) const { RegCloseKey(key); }
};
using Key = std::unique_ptr<std::remove_pointer_t<HKEY>, CloseKeyOf>;

// The path in the form that may be longer than MAX_PATH. A relative one is below the current folder.
std::wstring ForSystem(const fs::path& path) {
  const std::wstring given = path.wstring();
  const DWORD room = GetFullPathNameW(given.c_str(), 0, nullptr, nullptr);
  std::wstring full(room, L'\0');
  full.resize(GetFullPathNameW(given.c_str(), room, full.data(), nullptr));
  if (full.size() < 2 || full.substr(0, 4) == L"\\\\?\\" || full.substr(0, 4) == L"\\\\.\\") return full;
  return full.substr(0, 2) == L"\\\\" ? L"\\\\?\\UNC" + full.substr(1) : L"\\\\?\\" + full;
}

// The path as people write it.
std::wstring WithoutPrefix(const std::wstring& path) {
  constexpr std::size_t PrefixLength = 4;
  if (path.substr(0, 8) == L"\\\\?\\UNC\\") return L'\\' + path.substr(7);
  return path.substr(0, PrefixLength) == L"\\\\?\\" ? path.substr(PrefixLength) : path;
}

// Links are followed.
WindowsHandle Open(const fs::path& path, DWORD access) {
  return WindowsHandle(CreateFileW(ForSystem(path).c_str(), access,
                                   FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                   FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

bool HasType(const fs::path& path, bool isFolder) {
  const DWORD found = GetFileAttributesW(ForSystem(path).c_str());
  if (found == INVALID_FILE_ATTRIBUTES) return false;
  if ((found & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return ((found & FILE_ATTRIBUTE_DIRECTORY) != 0) == isFolder;
  const WindowsHandle opened = Open(path, 0);
  BY_HANDLE_FILE_INFORMATION file{};
  return opened && GetFileInformationByHandle(opened.Get(), &file) &&
         ((file.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) == isFolder;
}

// "HKLM\SOFTWARE\JavaSoft" is its root and the rest.
Key OpenKey(const std::string& key) {
  const std::size_t end = std::min(key.find('\\'), key.size());
  const HKEY root = key.substr(0, end) == "HKLM" ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
  HKEY opened = nullptr;
  // The view of 64-bit programs, whose WOW6432Node is that of the others.
  if (RegOpenKeyExW(root, Wide(key.substr(std::min(end + 1, key.size()))).c_str(), 0, KEY_READ | KEY_WOW64_64KEY,
                    &opened) != ERROR_SUCCESS) {
    return nullptr;
  }
  return Key(opened);
}

class WindowsMachine final : public Machine {
 public:
  std::string Root() const override { return {}; }

  std::optional<std::string> Variable(const std::string& name) const override {
    std::wstring value(LongestName, L'\0');
    const DWORD size = GetEnvironmentVariableW(Wide(name).c_str(), value.data(), static_cast<DWORD>(value.size()));
    if (size == 0 || size >= value.size()) return std::nullopt;
    value.resize(size);
    return Narrow(value);
  }

  Location Locate(const fs::path& path) const override {
    const WindowsHandle opened = Open(path, 0);
    if (!opened) return {{}, ReasonOf(GetLastError())};
    std::wstring real(LongestName, L'\0');
    const DWORD size = GetFinalPathNameByHandleW(opened.Get(), real.data(), static_cast<DWORD>(real.size()), 0);
    // Some file systems, such as those of RAM disks, do not report it. Links stay in the path then.
    if (size == 0 || size >= real.size()) return {fs::path(WithoutPrefix(ForSystem(path))), {}};
    real.resize(size);
    return {fs::path(WithoutPrefix(real)), {}};
  }

  bool IsFolder(const fs::path& path) const override { return HasType(path, true); }
  bool IsFile(const fs::path& path) const override { return HasType(path, false); }
  std::string Hindrance(const fs::path& path) const override {
    const DWORD found = GetFileAttributesW(ForSystem(path).c_str());
    // Of a link these are its own, also when it leads nowhere.
    const bool isLink = found != INVALID_FILE_ATTRIBUTES && (found & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    if (isLink ? static_cast<bool>(Open(path, 0)) : found != INVALID_FILE_ATTRIBUTES) return {};
    const DWORD error = GetLastError();
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ? std::string() : ReasonOf(error);
  }
  bool IsProgram(const fs::path& path) const override { return IsFile(path); }

  Listing FoldersIn(const fs::path& folder) const override {
    Listing listing;
    WIN32_FIND_DATAW entry;
    const HANDLE first = FindFirstFileW((ForSystem(folder) + L"\\*").c_str(), &entry);
    if (first == INVALID_HANDLE_VALUE) {
      const DWORD error = GetLastError();
      if (error != ERROR_FILE_NOT_FOUND) listing.reason = ReasonOf(error);  // else a drive with nothing in it
      return listing;
    }
    const FileSearch search(first);
    do {
      const std::string name = Narrow(entry.cFileName);
      if (name != "." && name != ".." && IsFolder(folder / fs::path(entry.cFileName))) listing.names.push_back(name);
    } while (FindNextFileW(search.get(), &entry));
    const DWORD error = GetLastError();
    if (error != ERROR_NO_MORE_FILES) listing.reason = ReasonOf(error);
    std::sort(listing.names.begin(), listing.names.end());
    return listing;
  }

  std::optional<std::string> ReadFront(const fs::path& file, std::size_t bytes) const override {
    if (!IsFile(file)) return std::nullopt;
    const WindowsHandle opened = Open(file, GENERIC_READ);
    if (!opened || GetFileType(opened.Get()) != FILE_TYPE_DISK) return std::nullopt;
    std::string front(bytes, '\0');
    std::size_t size = 0;
    while (size < bytes) {
      DWORD count = 0;
      if (!ReadFile(opened.Get(), front.data() + size, static_cast<DWORD>(bytes - size), &count, nullptr)) {
        return std::nullopt;
      }
      if (count == 0) break;
      size += count;
    }
    front.resize(size);
    return front;
  }

  std::vector<std::string> KeysIn(const std::string& key) const override {
    std::vector<std::string> names;
    const Key opened = OpenKey(key);
    if (opened == nullptr) return names;
    wchar_t name[256];  // no key has a longer name
    for (DWORD i = 0;; ++i) {
      DWORD length = static_cast<DWORD>(std::size(name));
      if (RegEnumKeyExW(opened.get(), i, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
      names.push_back(Narrow(std::wstring(name, length)));
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  std::optional<std::string> RegisteredText(const std::string& key, const std::string& value) const override {
    const Key opened = OpenKey(key);
    if (opened == nullptr) return std::nullopt;
    // Variables in it are expanded. A text that is longer than any path is not one.
    std::wstring text(LongestName, L'\0');
    DWORD bytes = static_cast<DWORD>(text.size() * sizeof(wchar_t));
    if (RegGetValueW(opened.get(), nullptr, Wide(value).c_str(), RRF_RT_REG_SZ, nullptr, text.data(), &bytes) !=
        ERROR_SUCCESS) {
      return std::nullopt;
    }
    text.resize(std::min(text.find(L'\0'), text.size()));
    return Narrow(text);
  }
};

}  // namespace

const Machine& ThisMachine() {
  static const WindowsMachine s_machine;
  return s_machine;
}

}  // namespace torvan::java::detail
