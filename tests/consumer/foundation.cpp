// Uses the base libraries alone. The exit code is 0 when everything works.
#include <mirel/Mirel.h>
#include <mirel/base/UnicodeString.h>
#include <place/Location.h>
#include <rx/UniString.h>

#include <cstdio>
#include <cstring>

int main() {
  RX::UniString path;
  const bool found = Place::Location(RX_TEXT("a folder")).ToPath(path) == 0;
  const mirel::base::CUnicodeString text(path);
  const bool same = std::strcmp(text.ToUTF8(), "a folder") == 0;
  std::puts(found && same ? "foundation: as it should be" : "foundation: the path is not what it was");
  return found && same ? 0 : 1;
}
