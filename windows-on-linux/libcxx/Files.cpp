#include <filesystem>
#include <fstream>
#include <locale>

#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

namespace std {

inline namespace __1 {

FILE* __open(const char* path, const char* mode) { return _wfopen(__widen(path).c_str(), __widen(mode).c_str()); }

}  // namespace __1

namespace filesystem {
namespace {

constexpr DWORD Room = 1024;  // enough for every path of a test

string Narrow(const wstring& text) {
  const int size = static_cast<int>(text.size());
  string narrow(text.size() * 3, '\0');
  narrow.resize(static_cast<size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), size, narrow.data(),
                                                        static_cast<int>(narrow.size()), nullptr, nullptr)));
  return narrow;
}

}  // namespace

path::path(const wchar_t* text) : m_text(Narrow(text)) {}

wstring path::wstring() const {
  const int size = static_cast<int>(m_text.size());
  std::wstring text(m_text.size(), L'\0');
  text.resize(static_cast<size_t>(MultiByteToWideChar(CP_UTF8, 0, m_text.data(), size, text.data(), size)));
  return text;
}

path temp_directory_path() {
  wchar_t text[Room];
  const DWORD size = GetTempPathW(Room, text);
  text[size - 1] = 0;  // in place of the last backslash
  return text;
}

path current_path() {
  wchar_t text[Room];
  GetCurrentDirectoryW(Room, text);
  return text;
}

void current_path(const path& folder) { SetCurrentDirectoryW(folder.wstring().c_str()); }

path canonical(const path& existing) {
  wchar_t text[Room];
  GetFullPathNameW(existing.wstring().c_str(), Room, text, nullptr);
  return text;
}

path absolute(const path& path, error_code& error) {
  wchar_t text[Room];
  error.clear();
  if (path.is_absolute()) return path;
  if (GetFullPathNameW(path.wstring().c_str(), Room, text, nullptr) != 0) return text;
  error.assign(static_cast<int>(GetLastError()), system_category());
  return {};
}

bool is_regular_file(const path& path, error_code& error) {
  error.clear();
  const DWORD attributes = GetFileAttributesW(path.wstring().c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES) return (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
  const DWORD reason = GetLastError();
  if (reason == ERROR_FILE_NOT_FOUND || reason == ERROR_PATH_NOT_FOUND) {
    error = make_error_code(errc::no_such_file_or_directory);
  } else {
    error.assign(static_cast<int>(reason), system_category());
  }
  return false;
}

bool exists(const path& path) { return GetFileAttributesW(path.wstring().c_str()) != INVALID_FILE_ATTRIBUTES; }

bool is_directory(const path& path) {
  const DWORD attributes = GetFileAttributesW(path.wstring().c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool is_empty(const path& folder) {
  WIN32_FIND_DATAW entry;
  const HANDLE search = FindFirstFileW((folder / "*").wstring().c_str(), &entry);
  int count = 0;
  for (BOOL more = search != INVALID_HANDLE_VALUE; more != FALSE; more = FindNextFileW(search, &entry)) ++count;
  FindClose(search);
  return count <= 2;  // "." and ".."
}

bool create_directories(const path& folder) {
  if (exists(folder)) return false;
  const path parent = folder.parent_path();
  if (parent.u8string() != folder.u8string()) create_directories(parent);
  return CreateDirectoryW(folder.wstring().c_str(), nullptr) != 0;
}

bool copy_file(const path& from, const path& to, copy_options options) {
  return CopyFileW(from.wstring().c_str(), to.wstring().c_str(), options == copy_options::none) != 0;
}

void rename(const path& from, const path& to) {
  MoveFileExW(from.wstring().c_str(), to.wstring().c_str(), MOVEFILE_REPLACE_EXISTING);
}

void remove_all(const path& folder, error_code& error) {
  error.clear();
  const auto check = [&error](BOOL done) {
    if (!done) error.assign(static_cast<int>(GetLastError()), system_category());
  };
  WIN32_FIND_DATAW entry;
  const HANDLE search = FindFirstFileW((folder / "*").wstring().c_str(), &entry);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    const path inner = folder / path(entry.cFileName);
    const string name = path(entry.cFileName).u8string();
    if (name == "." || name == "..") continue;
    if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
      error_code innerError;
      remove_all(inner, innerError);
      if (innerError) error = innerError;
    } else {
      check(DeleteFileW(inner.wstring().c_str()));
    }
  } while (FindNextFileW(search, &entry));
  FindClose(search);
  if (!error) check(RemoveDirectoryW(folder.wstring().c_str()));
}

void permissions(const path&, perms) {}

}  // namespace filesystem
}  // namespace std
