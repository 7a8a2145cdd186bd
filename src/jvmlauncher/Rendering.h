// What the launcher's renderings have in common.
#pragma once

#include <mirel/base/UnicodeStringBuffer.h>
#include <place/Location.h>

namespace torvan::jvmlauncher {

// The initial capacity of every rendering, in units.
constexpr unsigned int RenderingCapacity = 32;

inline bool HasSpace(const mirel::base::CUnicodeString& text) noexcept { return text.Find(RX_TEXT(' ')) >= 0; }

// Appends text to a command line, in double quotes when it contains a space.
void AppendQuoted(mirel::base::CUnicodeStringBuffer& line, const mirel::base::CUnicodeString& text);

// Returns a location's path; empty when it has none.
mirel::base::CUnicodeString PathOf(const Place::Location& location);

}  // namespace torvan::jvmlauncher
