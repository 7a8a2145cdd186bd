#include <rx/Text.h>

#include <climits>
#include <cstdarg>
#include <cstdint>

namespace RX {
namespace {

bool IsSpace(UniChar unit) noexcept { return unit == ' ' || (unit >= '\t' && unit <= '\r'); }

void SkipSpace(const UniChar*& text) noexcept {
  while (IsSpace(*text)) ++text;
}

// Returns the value of a digit, or one that is too large for any base.
unsigned int DigitOf(UniChar unit) noexcept {
  if (unit >= '0' && unit <= '9') return static_cast<unsigned int>(unit - '0');
  if (unit >= 'a' && unit <= 'f') return static_cast<unsigned int>(unit - 'a' + 10);
  if (unit >= 'A' && unit <= 'F') return static_cast<unsigned int>(unit - 'A' + 10);
  return UINT_MAX;
}

// One conversion of a format, after its "%".
struct Conversion {
  bool assigns = true;
  std::size_t width = SIZE_MAX;
  UniChar type = 0;

  explicit Conversion(const UniChar*& format) noexcept {
    if (*format == '*') {
      assigns = false;
      ++format;
    }
    if (DigitOf(*format) < 10) width = 0;
    for (; DigitOf(*format) < 10; ++format) {
      if (width < SIZE_MAX / 100) width = width * 10 + DigitOf(*format);
    }
    type = *format;
    if (type != 0) ++format;
  }

  bool IsNumber() const noexcept { return type == 'd' || type == 'u' || type == 'x'; }
};

// A number while it is read; it stops growing once it is out of every range.
struct Number {
  bool negative = false;
  long long magnitude = 0;

  // Reads a number; false when there is none. `text` is then where reading stopped.
  bool Read(const UniChar*& text, const Conversion& conversion) noexcept {
    const unsigned int base = conversion.type == 'x' ? 16 : 10;
    std::size_t left = conversion.width;
    if (left != 0 && (*text == '-' || *text == '+')) {
      negative = *text == '-';
      ++text;
      --left;
    }
    if (base == 16 && left > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X') && DigitOf(text[2]) < base) {
      text += 2;
      left -= 2;
    }
    const UniChar* const digits = text;
    for (; left != 0 && DigitOf(*text) < base; ++text, --left) {
      if (magnitude <= UINT_MAX) magnitude = magnitude * base + DigitOf(*text);
    }
    return text != digits;
  }

  long long Within(long long lowest, long long highest) const noexcept {
    const long long value = negative ? -magnitude : magnitude;
    return value < lowest ? lowest : value > highest ? highest : value;
  }
};

}  // namespace

int suscanf(const UniChar* text, const UniChar* format, ...) noexcept {
  std::va_list values;
  va_start(values, format);
  int stored = 0;
  bool converted = false;
  bool textEnded = false;
  while (*format != 0) {
    if (IsSpace(*format)) {
      SkipSpace(format);
      SkipSpace(text);
      continue;
    }
    const bool isConversion = format[0] == '%' && format[1] != '%';
    if (*format == '%') {
      ++format;
      SkipSpace(text);
    }
    textEnded = *text == 0;
    if (!isConversion) {
      if (*text != *format) break;
      ++text;
      ++format;
      continue;
    }
    const Conversion conversion(format);
    Number number;
    if (!conversion.IsNumber() || textEnded || !number.Read(text, conversion)) break;
    converted = true;
    if (!conversion.assigns) continue;
    if (conversion.type == 'd') {
      *va_arg(values, int*) = static_cast<int>(number.Within(INT_MIN, INT_MAX));
    } else {
      *va_arg(values, unsigned int*) = static_cast<unsigned int>(number.Within(0, UINT_MAX));
    }
    ++stored;
  }
  va_end(values);
  return textEnded && !converted ? -1 : stored;
}

}  // namespace RX
