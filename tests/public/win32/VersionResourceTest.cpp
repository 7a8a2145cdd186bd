// The version that Windows shows for a DLL.
#include <torvan/Version.h>

#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <string>

namespace tests {
namespace {

// The version resource of a loaded DLL, as bytes in memory: UTF-16 texts between numbers.
std::wstring VersionResourceOf(const wchar_t* dll) {
  const HMODULE module = GetModuleHandleW(dll);
  const HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(1), MAKEINTRESOURCEW(16));
  if (resource == nullptr) return L"";
  const void* const bytes = LockResource(LoadResource(module, resource));
  std::wstring words(SizeofResource(module, resource) / sizeof(wchar_t), L'\0');
  std::memcpy(&words[0], bytes, words.size() * sizeof(wchar_t));
  return words;
}

// The text after a name; zeros fill the space between them.
std::wstring ValueOf(const std::wstring& resource, const std::wstring& name) {
  const std::size_t found = resource.find(name + L'\0');
  if (found == std::wstring::npos) return L"nothing of that name";
  const std::size_t value = resource.find_first_not_of(L'\0', found + name.size());
  return std::wstring(resource.c_str() + value);
}

class VersionResourceTest : public ::testing::TestWithParam<const wchar_t*> {};

TEST_P(VersionResourceTest, NamesTheLibraryAndItsVersion) {
  const std::wstring resource = VersionResourceOf(GetParam());
  const std::string narrow = TORVAN_VERSION_STRING;
  const std::wstring version(narrow.begin(), narrow.end());

  EXPECT_EQ(ValueOf(resource, L"OriginalFilename"), GetParam());
  EXPECT_EQ(ValueOf(resource, L"FileVersion"), version);
  EXPECT_EQ(ValueOf(resource, L"ProductVersion"), version);
  EXPECT_EQ(ValueOf(resource, L"ProductName"), L"TORVAN");
}

TEST_P(VersionResourceTest, CarriesTheVersionAsNumbers) {
  const std::wstring resource = VersionResourceOf(GetParam());
  // The signature and the layout's own version 1.0 precede the file's and the product's version.
  const std::size_t signature = resource.find(L"\x04BD\xFEEF");
  ASSERT_NE(signature, std::wstring::npos);
  const std::wstring numbers = {TORVAN_VERSION_MINOR, TORVAN_VERSION_MAJOR, 0, TORVAN_VERSION_PATCH};
  EXPECT_EQ(resource.substr(signature + 4, 4), numbers);
  EXPECT_EQ(resource.substr(signature + 8, 4), numbers);
}

INSTANTIATE_TEST_SUITE_P(EachDll, VersionResourceTest,
                         ::testing::Values(L"torvan.dll", L"mirel.dll", L"RXRoot.dll", L"PlaceLib.dll"));

}  // namespace
}  // namespace tests
