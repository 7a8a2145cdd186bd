#include <mirel/io/PrintStream.h>

namespace mirel::io {

CPrintStream::~CPrintStream() = default;

void CPrintStream::Flush() {}

void CPrintStream::PrintLine(const char* text) {
  Print(text);
  Print("\n");
}

}  // namespace mirel::io
