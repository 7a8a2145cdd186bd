#include "jvmlauncher/Rendering.h"

namespace torvan::jvmlauncher {

using mirel::base::CUnicodeString;

void AppendQuoted(mirel::base::CUnicodeStringBuffer& line, const CUnicodeString& text) {
  // Intentional: a space alone calls for quotes, and nothing is escaped; quotes, backslashes and tabs are passed on as
  // they are, which a started program may read as something else.
  const bool quoted = HasSpace(text);
  if (quoted) line += RX_TEXT('"');
  line += text;
  if (quoted) line += RX_TEXT('"');
}

CUnicodeString PathOf(const Place::Location& location) {
  RX::UniString path;
  // Intentional: the status is not looked at; a location without a path is an empty text.
  location.ToPath(path);
  return CUnicodeString(path);
}

}  // namespace torvan::jvmlauncher
