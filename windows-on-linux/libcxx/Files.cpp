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

bool IsMissing(DWORD reason) { return reason == ERROR_FILE_NOT_FOUND || reason == ERROR_PATH_NOT_FOUND; }

// The attributes, or INVALID_FILE_ATTRIBUTES and the error.
DWORD AttributesOf(const path& path, error_code& error) {
  error.clear();
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) error.assign(static_cast<int>(GetLastError()), system_category());
  return attributes;
}

}  // namespace

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

void current_path(const path& folder) { SetCurrentDirectoryW(folder.c_str()); }

path canonical(const path& existing) {
  wchar_t text[Room];
  GetFullPathNameW(existing.c_str(), Room, text, nullptr);
  return text;
}

path absolute(const path& path, error_code& error) {
  wchar_t text[Room];
  error.clear();
  if (path.is_absolute()) return path;
  if (GetFullPathNameW(path.c_str(), Room, text, nullptr) != 0) return text;
  error.assign(static_cast<int>(GetLastError()), system_category());
  return {};
}

bool is_regular_file(const path& path, error_code& error) {
  const DWORD attributes = AttributesOf(path, error);
  if (error && IsMissing(static_cast<DWORD>(error.value()))) error = make_error_code(errc::no_such_file_or_directory);
  return !error && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool exists(const path& path, error_code& error) {
  AttributesOf(path, error);
  const bool isThere = !error;
  if (error && IsMissing(static_cast<DWORD>(error.value()))) error.clear();
  return isThere;
}

bool is_directory(const path& path, error_code& error) {
  const DWORD attributes = AttributesOf(path, error);
  return !error && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool copy_file(const path& from, const path& to, copy_options options) {
  return CopyFileW(from.c_str(), to.c_str(), options == copy_options::none) != 0;
}

void rename(const path& from, const path& to) { MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING); }

bool remove(const path& path, error_code& error) {
  const DWORD attributes = AttributesOf(path, error);
  if (error && IsMissing(static_cast<DWORD>(error.value()))) error.clear();
  if (attributes == INVALID_FILE_ATTRIBUTES) return false;
  const bool isFolder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  const BOOL isDone = isFolder ? RemoveDirectoryW(path.c_str()) : DeleteFileW(path.c_str());
  if (!isDone) error.assign(static_cast<int>(GetLastError()), system_category());
  return isDone != 0;
}

void permissions(const path&, perms) {}

}  // namespace filesystem
}  // namespace std
