// What the renderings of the launcher have in common.
#pragma once

#include <mirel/base/UnicodeStringBuffer.h>
#include <place/Location.h>

namespace torvan::jvmlauncher {

// The room that every rendering starts with.
constexpr unsigned int RenderingCapacity = 32;

inline bool HasSpace(const mirel::base::CUnicodeString& text) noexcept { return text.Find(RX_TEXT(' ')) >= 0; }

// Appends text as it stands on a command line: in double quotes when it holds a space.
void AppendQuoted(mirel::base::CUnicodeStringBuffer& line, const mirel::base::CUnicodeString& text);

// Gives a location's path, which is empty for a location that names nothing.
mirel::base::CUnicodeString PathOf(const Place::Location& location);

}  // namespace torvan::jvmlauncher
