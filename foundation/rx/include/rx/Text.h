// 16-bit text: the character type, literals, length and scanning.
#pragma once

#include <rx/Export.h>

#include <cstddef>

namespace RX {

// The 16-bit code unit of all wide text. It is wchar_t where that has 16 bits, so that a Windows host passes its own
// literals; elsewhere it is char16_t.
#if defined(_WIN32)
using UniChar = wchar_t;
#define RX_TEXT(literal) L##literal
#else
using UniChar = char16_t;
#define RX_TEXT(literal) u##literal
#endif
static_assert(sizeof(UniChar) == 2, "wide text is UTF-16");

// Gives a UTF-16 literal as a constant that exists from load to unload.
// The text is never copied; a constant made this way needs no code at start-up, so it can be used by any initialiser.
template <std::size_t Size>
constexpr const UniChar* DefineConstantUTF16CharacterOrString(const UniChar (&literal)[Size]) noexcept {
  return literal;
}

// Counts the UTF-16 units before the terminating zero. The text must not be null. Throws nothing.
RX_API std::size_t ucslen(const UniChar* text) noexcept;

// Reads values out of wide text as the C library's sscanf does.
// Understood are white space, literal characters, "%%" and the conversions "%d", "%u" and "%x", each with an optional
// "*" (read and forget) and a maximum width; they store int, unsigned int and unsigned int. A number out of range is
// stored as the nearest one in range. Returns the number of values stored, or -1 when the text ends before the first
// conversion. Any other conversion ends the scan. Throws nothing.
RX_API int suscanf(const UniChar* text, const UniChar* format, ...) noexcept;

}  // namespace RX
