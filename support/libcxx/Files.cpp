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

wstring Wide(const path& path) { return __widen(path.u8string().c_str()); }

string Narrow(const wstring& text) {
  const int size = static_cast<int>(text.size());
  string narrow(text.size() * 3, '\0');
  narrow.resize(static_cast<size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), size, narrow.data(),
                                                        static_cast<int>(narrow.size()), nullptr, nullptr)));
  return narrow;
}

}  // namespace

path temp_directory_path() {
  wchar_t text[MAX_PATH + 1];
  const DWORD size = GetTempPathW(MAX_PATH + 1, text);
  return Narrow(wstring(text, size - 1));  // without the last backslash
}

path canonical(const path& existing) {
  wchar_t text[1024];
  const DWORD size = GetFullPathNameW(Wide(existing).c_str(), 1024, text, nullptr);
  return Narrow(wstring(text, size));
}

bool create_directories(const path& folder) {
  const wstring text = Wide(folder);
  if (GetFileAttributesW(text.c_str()) != INVALID_FILE_ATTRIBUTES) return false;
  if (folder.parent_path().u8string() != folder.u8string()) create_directories(folder.parent_path());
  return CreateDirectoryW(text.c_str(), nullptr) != 0;
}

void rename(const path& from, const path& to) {
  MoveFileExW(Wide(from).c_str(), Wide(to).c_str(), MOVEFILE_REPLACE_EXISTING);
}

void remove_all(const path& folder) {
  const wstring text = Wide(folder);
  WIN32_FIND_DATAW entry;
  const HANDLE search = FindFirstFileW((text + L"\\*").c_str(), &entry);
  if (search != INVALID_HANDLE_VALUE) {
    do {
      const wstring name = entry.cFileName;
      if (name == L"." || name == L"..") continue;
      const wstring inner = text + L'\\' + name;
      if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        remove_all(Narrow(inner));
      } else {
        DeleteFileW(inner.c_str());
      }
    } while (FindNextFileW(search, &entry));
    FindClose(search);
  }
  RemoveDirectoryW(text.c_str());
}

}  // namespace filesystem
}  // namespace std
