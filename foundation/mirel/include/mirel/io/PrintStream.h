// Streams that people read.
#pragma once

#include <mirel/base/Base.h>

namespace mirel::io {

// Takes 8-bit text for people to read. Derive from it to send reports where the host wants them.
class MIREL_API CPrintStream : public base::CBase {
 public:
  virtual ~CPrintStream();

  // Takes a zero-terminated text as it stands. Implementations should not throw: they are called while failures are
  // being reported.
  virtual void Print(const char* text) = 0;
  // Writes out what is held back; by default nothing is.
  virtual void Flush();

  // Prints a text and ends the line.
  void PrintLine(const char* text);

 protected:
  CPrintStream() = default;
  CPrintStream(const CPrintStream&) = default;
  CPrintStream& operator=(const CPrintStream&) = default;
};

}  // namespace mirel::io
