// Text streams for people to read.
#pragma once

#include <mirel/base/Base.h>

namespace mirel::io {

// A stream of 8-bit text for people to read. Derive from it to send reports where the host wants them.
class MIREL_API CPrintStream : public base::CBase {
 public:
  virtual ~CPrintStream();

  // Writes a zero-terminated text unchanged. Implementations should not throw: they are called while a failure is being
  // reported.
  virtual void Print(const char* text) = 0;
  // Flushes what is buffered; by default nothing is.
  virtual void Flush();

  // Prints a text and ends the line.
  void PrintLine(const char* text);

 protected:
  CPrintStream() = default;
  CPrintStream(const CPrintStream&) = default;
  CPrintStream& operator=(const CPrintStream&) = default;
};

}  // namespace mirel::io
