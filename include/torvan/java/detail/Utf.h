// UTF-8 and UTF-16, both counted: a NUL is a character like any other.
#pragma once

#include <torvan/java/Failure.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace torvan::java::detail {

// Text that is not UTF-8. Where it was given to a member, the member's name is added to the text.
class TORVAN_JAVA_VISIBLE InvalidUtf8 : public Misuse {
 public:
  using Misuse::Misuse;
};

// UTF-16 as UTF-8. Each lone surrogate becomes U+FFFD, so any Java string comes out.
std::string ToUtf8(std::u16string_view units);

// UTF-8 as UTF-16. Throws InvalidUtf8 "invalid UTF-8 at byte N" (from 0) for what RFC 3629 does not allow: truncated
// and overlong sequences, surrogates, and what is beyond U+10FFFF.
std::u16string ToUtf16(std::string_view text);

// What JNI calls UTF-8: zeros and surrogates are encoded one by one, and no byte is zero.
std::string ToModifiedUtf8(std::u16string_view units);

// Tells whether all bytes are ASCII and none is NUL: then Java's modified UTF-8 and UTF-8 are the same.
bool IsPlainAscii(std::string_view text) noexcept;

// Writes the units of UTF-8 to `out`, which has room for one for each byte, and returns their end. Throws as ToUtf16.
char16_t* WriteUtf16(std::string_view text, char16_t* out);

// Writes the UTF-8 of `size` units to `out`, which has room for three bytes for each, and returns the bytes' end.
char* WriteUtf8(const char16_t* units, std::size_t size, char* out) noexcept;

}  // namespace torvan::java::detail
