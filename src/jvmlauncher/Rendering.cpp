#include "jvmlauncher/Rendering.h"

namespace torvan::jvmlauncher {

using mirel::base::CUnicodeString;

void AppendQuoted(mirel::base::CUnicodeStringBuffer& line, const CUnicodeString& text) {
  // Intentional: only a space calls for quotes, and nothing is escaped; quotes, backslashes and tabs are passed
  // unchanged, which the started program may read differently.
  const bool quoted = HasSpace(text);
  if (quoted) line += RX_TEXT('"');
  line += text;
  if (quoted) line += RX_TEXT('"');
}

CUnicodeString PathOf(const Place::Location& location) {
  RX::UniString path;
  // Intentional: the status is ignored; a location without a path is an empty text.
  location.ToPath(path);
  return CUnicodeString(path);
}

}  // namespace torvan::jvmlauncher
