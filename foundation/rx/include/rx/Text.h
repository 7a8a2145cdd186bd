// 16-bit text: the character type, literals, length and scanning.
#pragma once

#include <rx/Export.h>

#include <cstddef>

namespace RX {

// The 16-bit code unit of all wide text. It is wchar_t where that has 16 bits, so that Windows hosts pass their own
// literals; elsewhere it is char16_t.
#if defined(_WIN32)
using UniChar = wchar_t;
#define RX_TEXT(literal) L##literal
#else
using UniChar = char16_t;
#define RX_TEXT(literal) u##literal
#endif
static_assert(sizeof(UniChar) == 2, "wide text is UTF-16");

// Returns a UTF-16 literal as a constant that lives while its library is loaded.
// The text is not copied and the constant is initialised at compile time, so any static initialiser can use it.
template <std::size_t Size>
constexpr const UniChar* DefineConstantUTF16CharacterOrString(const UniChar (&literal)[Size]) noexcept {
  return literal;
}

// Counts the UTF-16 units before the terminating zero. The text must not be null. Throws nothing.
RX_API std::size_t ucslen(const UniChar* text) noexcept;

// Reads values from wide text as the C library's sscanf does.
// Supports white space, literal characters, "%%" and the conversions "%d", "%u" and "%x", each with an optional "*"
// (read and discard) and a maximum width; they store int, unsigned int and unsigned int. A number out of range is
// stored as the nearest one in range. Returns the number of values stored, or -1 when the text ends before the first
// conversion. Any other conversion ends the scan. Throws nothing.
RX_API int suscanf(const UniChar* text, const UniChar* format, ...) noexcept;

}  // namespace RX
