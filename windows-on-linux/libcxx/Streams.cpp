#include <cstdio>
#include <iostream>

_LIBCPP_BEGIN_NAMESPACE_STD

ostream& ostream::operator<<(bool value) {
  if ((flags() & boolalpha) != 0) return Padded(value ? "true" : "false");
  return Unsigned(value ? 1 : 0, false);
}

ostream& ostream::operator<<(double value) {
  char text[64];
  const int size = snprintf(text, sizeof(text), "%.*g", static_cast<int>(precision()), value);
  return Padded(string_view(text, static_cast<size_t>(size)));
}

ostream& ostream::operator<<(const void* value) {
  char text[24];
  const int size =
      snprintf(text, sizeof(text), "0x%llx", static_cast<unsigned long long>(reinterpret_cast<size_t>(value)));
  return Padded(string_view(text, static_cast<size_t>(size)));
}

ostream& ostream::Unsigned(unsigned long long value, bool negative) {
  const unsigned int base = (flags() & hex) != 0 ? 16 : (flags() & oct) != 0 ? 8 : 10;
  const char* const digits = (flags() & uppercase) != 0 ? "0123456789ABCDEF" : "0123456789abcdef";
  char text[32];
  char* first = text + sizeof(text);
  do {
    *--first = digits[value % base];
    value /= base;
  } while (value != 0);
  if (negative) *--first = '-';
  return Padded(string_view(first, static_cast<size_t>(text + sizeof(text) - first)));
}

ostream& ostream::Padded(string_view text) {
  for (streamsize missing = width(0) - static_cast<streamsize>(text.size()); missing > 0; --missing) put(fill());
  return write(text.data(), static_cast<streamsize>(text.size()));
}

namespace {

class Console : public ostream {
 public:
  explicit Console(FILE* file) : m_file(file) {}
  ostream& flush() override {
    fflush(m_file);
    return *this;
  }

 protected:
  void Put(const char* text, size_t size) override { fwrite(text, 1, size, m_file); }

 private:
  FILE* m_file;
};

ostream& MakeConsole(FILE* file) { return *new Console(file); }

}  // namespace

ostream& cout = MakeConsole(stdout);
ostream& cerr = MakeConsole(stderr);

_LIBCPP_END_NAMESPACE_STD
