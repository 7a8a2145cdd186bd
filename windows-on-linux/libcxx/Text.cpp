#include <cstdio>
#include <cstdlib>
#include <locale>
#include <stdexcept>
#include <string>

#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

_LIBCPP_BEGIN_NAMESPACE_STD

namespace {

template <class T>
string Render(const char* format, T value) {
  char text[400];
  const int size = snprintf(text, sizeof(text), format, value);
  return string(text, static_cast<size_t>(size));
}

template <class T>
T Parse(T (*parse)(const char*, char**, int), const string& text, size_t* end, int base) {
  char* after = nullptr;
  const T value = parse(text.c_str(), &after, base);
  if (after == text.c_str()) throw invalid_argument("not a number");
  if (end != nullptr) *end = static_cast<size_t>(after - text.c_str());
  return value;
}

}  // namespace

string to_string(int value) { return Render("%d", value); }
string to_string(unsigned int value) { return Render("%u", value); }
string to_string(long value) { return Render("%ld", value); }
string to_string(unsigned long value) { return Render("%lu", value); }
string to_string(long long value) { return Render("%lld", value); }
string to_string(unsigned long long value) { return Render("%llu", value); }
string to_string(float value) { return Render("%f", static_cast<double>(value)); }
string to_string(double value) { return Render("%f", value); }

int stoi(const string& text, size_t* end, int base) { return Parse(&strtol, text, end, base); }
long stol(const string& text, size_t* end, int base) { return Parse(&strtol, text, end, base); }
unsigned long stoul(const string& text, size_t* end, int base) { return Parse(&strtoul, text, end, base); }
long long stoll(const string& text, size_t* end, int base) { return Parse(&strtoll, text, end, base); }
unsigned long long stoull(const string& text, size_t* end, int base) { return Parse(&strtoull, text, end, base); }

wstring __widen(const char* text) {
  const int size = MultiByteToWideChar(CP_UTF8, 0, text, -1, nullptr, 0);
  wstring wide(static_cast<size_t>(size), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text, -1, wide.data(), size);
  wide.pop_back();
  return wide;
}

_LIBCPP_END_NAMESPACE_STD
