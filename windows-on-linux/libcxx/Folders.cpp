// What is in a folder.
#include <filesystem>

#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

namespace std::filesystem {

namespace {

error_code LastError() { return {static_cast<int>(GetLastError()), system_category()}; }

bool IsInner(const WIN32_FIND_DATAW& found) {
  const std::wstring name = found.cFileName;
  return name != L"." && name != L"..";
}

}  // namespace

struct __listing {
  explicit __listing(const path& listed) : folder(listed), search(FindFirstFileW((listed / "*").c_str(), &found)) {}
  __listing(const __listing&) = delete;
  __listing& operator=(const __listing&) = delete;
  ~__listing() { FindClose(search); }

  path folder;
  WIN32_FIND_DATAW found;
  HANDLE search;
  directory_entry entry;
};

directory_iterator::directory_iterator(const path& folder, error_code& error) {
  error.clear();
  m_listing = make_shared<__listing>(folder);
  if (m_listing->search == INVALID_HANDLE_VALUE) {
    error = LastError();
    m_listing.reset();
  } else if (IsInner(m_listing->found)) {
    m_listing->entry = directory_entry(folder / m_listing->found.cFileName);
  } else {
    increment(error);
  }
}

directory_iterator::directory_iterator(const path& folder) {
  error_code error;
  *this = directory_iterator(folder, error);
  if (error) throw system_error(error, "directory_iterator");
}

const directory_entry& directory_iterator::operator*() const { return m_listing->entry; }

directory_iterator& directory_iterator::increment(error_code& error) {
  error.clear();
  while (FindNextFileW(m_listing->search, &m_listing->found)) {
    if (!IsInner(m_listing->found)) continue;
    m_listing->entry = directory_entry(m_listing->folder / m_listing->found.cFileName);
    return *this;
  }
  if (GetLastError() != ERROR_NO_MORE_FILES) error = LastError();
  m_listing.reset();
  return *this;
}

bool is_empty(const path& folder) { return directory_iterator(folder) == directory_iterator(); }

bool create_directory(const path& folder) { return CreateDirectoryW(folder.c_str(), nullptr) != 0; }

bool create_directories(const path& folder) {
  if (exists(folder)) return false;
  const path parent = folder.parent_path();
  if (parent != folder) create_directories(parent);
  return create_directory(folder);
}

void remove_all(const path& folder, error_code& error) {
  error.clear();
  error_code reason;
  for (directory_iterator entry(folder, reason), end; entry != end; entry.increment(reason)) {
    const DWORD attributes = GetFileAttributesW(entry->path().c_str());
    const bool isLink = (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    error_code inner;
    if (!isLink && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
      remove_all(entry->path(), inner);
    } else {
      remove(entry->path(), inner);
    }
    if (inner) error = inner;
  }
  if (!error) remove(folder, error);
}

}  // namespace std::filesystem
