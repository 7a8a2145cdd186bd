// Paths of Windows: a root name such as "C:" or "\\server", separators after it, and the names of the relative path.
#include <algorithm>
#include <filesystem>
#include <vector>

#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

namespace std::filesystem {

namespace {

constexpr const wchar_t* Separators = L"\\/";

bool IsSeparator(wchar_t unit) { return unit == L'\\' || unit == L'/'; }

// Where the name that begins at `start` ends.
size_t NameEnd(const wstring& text, size_t start) { return min(text.find_first_of(Separators, start), text.size()); }

size_t RootNameSize(const wstring& text) {
  if (text.size() > 1 && text[1] == L':') return 2;
  const bool isServer = text.size() > 2 && IsSeparator(text[0]) && IsSeparator(text[1]) && !IsSeparator(text[2]);
  return isServer ? NameEnd(text, 2) : 0;
}

// Where the relative path begins.
size_t RootSize(const wstring& text) {
  return min(text.find_first_not_of(Separators, RootNameSize(text)), text.size());
}

bool HasRootSeparator(const wstring& text) { return RootSize(text) > RootNameSize(text); }

size_t LastName(const wstring& text) { return max(text.find_last_of(Separators) + 1, RootSize(text)); }

// The path with NUL as its separator, which is less than any character of a name.
wstring Comparable(const wstring& text) {
  const size_t root = RootNameSize(text);
  wstring result = text.substr(0, root);
  replace(result.begin(), result.end(), L'/', L'\\');
  for (size_t i = root; i < text.size(); ++i) {
    const bool isRepeated = i > root && IsSeparator(text[i]) && IsSeparator(text[i - 1]);
    if (!isRepeated) result += IsSeparator(text[i]) ? L'\0' : text[i];
  }
  return result;
}

}  // namespace

path::path(const std::string& text) : m_text(text.size(), L'\0') {
  const int size = static_cast<int>(text.size());
  m_text.resize(static_cast<size_t>(MultiByteToWideChar(CP_UTF8, 0, text.data(), size, m_text.data(), size)));
}

string path::u8string() const {
  std::string text(m_text.size() * 3, '\0');  // no unit takes more bytes
  text.resize(static_cast<size_t>(WideCharToMultiByte(CP_UTF8, 0, m_text.data(), static_cast<int>(m_text.size()),
                                                      text.data(), static_cast<int>(text.size()), nullptr, nullptr)));
  return text;
}

bool path::has_relative_path() const { return RootSize(m_text) < m_text.size(); }
bool path::is_absolute() const { return RootNameSize(m_text) > 0 && HasRootSeparator(m_text); }
path path::filename() const { return m_text.substr(LastName(m_text)); }

path path::parent_path() const {
  if (!has_relative_path()) return *this;
  const size_t root = RootSize(m_text);
  size_t end = LastName(m_text);
  while (end > root && IsSeparator(m_text[end - 1])) --end;
  return m_text.substr(0, end);
}

path path::extension() const {
  const std::wstring name = filename().m_text;
  const size_t dot = name.rfind(L'.');
  if (dot == 0 || dot == std::wstring::npos || name == L"..") return {};
  return name.substr(dot);
}

path& path::make_preferred() {
  replace(m_text.begin(), m_text.end(), L'/', preferred_separator);
  return *this;
}

// A name with another root, or with a root name and no drive before it, stays as it is.
path path::operator/(const path& name) const {
  const std::wstring ownRoot = m_text.substr(0, RootNameSize(m_text));
  const std::wstring root = name.m_text.substr(0, RootNameSize(name.m_text));
  if (name.is_absolute() || (!root.empty() && root != ownRoot)) return name;
  const std::wstring rest = name.m_text.substr(root.size());
  if (HasRootSeparator(name.m_text)) return ownRoot + rest;
  const bool needsSeparator = LastName(m_text) < m_text.size() || (ownRoot.size() > 2 && !HasRootSeparator(m_text));
  return (needsSeparator ? m_text + preferred_separator : m_text) + rest;
}

path path::lexically_normal() const {
  if (empty()) return {};
  vector<std::wstring> names;
  bool isFolder = false;  // by a last name that is empty, "." or ".."
  for (size_t start = RootSize(m_text), end = start; end < m_text.size(); start = end + 1) {
    end = NameEnd(m_text, start);
    const std::wstring name = m_text.substr(start, end - start);
    isFolder = name.empty() || name == L"." || name == L"..";
    if (name == L".." && !names.empty() && names.back() != L"..") {
      names.pop_back();
    } else if (name == L".." ? !HasRootSeparator(m_text) : !isFolder) {
      names.push_back(name);
    }
  }
  path result = m_text.substr(0, RootNameSize(m_text)) + (HasRootSeparator(m_text) ? L"\\" : L"");
  for (size_t i = 0; i < names.size(); ++i) result.m_text += (i > 0 ? L"\\" : L"") + names[i];
  if (isFolder && !names.empty() && names.back() != L"..") result.m_text += preferred_separator;
  return result.empty() ? path(L".") : result.make_preferred();
}

int path::compare(const path& other) const { return Comparable(m_text).compare(Comparable(other.m_text)); }

}  // namespace std::filesystem
