#include "platform/linux/CommandLine.h"

#include <mirel/base/Base.h>
#include <rx/Memory.h>

#include <cstddef>
#include <cstring>

namespace torvan::platform {
namespace {

bool IsSeparator(char byte) { return byte == ' ' || byte == '\t'; }

// Where a text is read and where its arguments are written.
struct Cursor {
  const char* from;
  char* to;

  bool AtEnd(bool quoted) const { return *from == 0 || (!quoted && IsSeparator(*from)); }
};

void CopyProgram(Cursor& cursor) {
  bool quoted = false;
  for (; !cursor.AtEnd(quoted); ++cursor.from) {
    if (*cursor.from == '"') {
      quoted = !quoted;
    } else {
      *cursor.to++ = *cursor.from;
    }
  }
}

void CopyArgument(Cursor& cursor) {
  bool quoted = false;
  while (!cursor.AtEnd(quoted)) {
    std::size_t backslashes = std::strspn(cursor.from, "\\");
    cursor.from += backslashes;
    const bool beforeQuote = *cursor.from == '"';
    const bool literalQuote = beforeQuote && backslashes % 2 != 0;
    if (beforeQuote) backslashes /= 2;
    for (; backslashes > 0; --backslashes) *cursor.to++ = '\\';
    if (literalQuote) {
      *cursor.to++ = *cursor.from++;
    } else if (beforeQuote && quoted && cursor.from[1] == '"') {
      *cursor.to++ = '"';
      cursor.from += 2;
    } else if (beforeQuote) {
      quoted = !quoted;
      ++cursor.from;
    } else if (!cursor.AtEnd(quoted)) {
      *cursor.to++ = *cursor.from++;
    }
  }
}

}  // namespace

CommandLine::CommandLine(const char* text) {
  const std::size_t length = std::strlen(text);
  // Every argument after the program takes at least one byte and a separator; the null pointer ends them.
  const std::size_t pointers = length / 2 + 2;
  m_arguments = static_cast<char**>(RX_malloc(pointers * sizeof(char*) + length + 1));
  if (m_arguments == nullptr) mirel::base::CBase::_ThrowMemoryException("platform/linux/CommandLine", __LINE__);

  char** next = m_arguments;
  Cursor cursor{text, reinterpret_cast<char*>(m_arguments + pointers)};
  *next++ = cursor.to;
  CopyProgram(cursor);
  for (;;) {
    while (IsSeparator(*cursor.from)) ++cursor.from;
    *cursor.to++ = 0;
    if (*cursor.from == 0) break;
    *next++ = cursor.to;
    CopyArgument(cursor);
  }
  *next = nullptr;
}

CommandLine::~CommandLine() { RX_free(m_arguments); }

}  // namespace torvan::platform
