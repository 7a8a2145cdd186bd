// The base of all exceptions.
#pragma once

#include <mirel/base/Object.h>

namespace mirel::io {
class CPrintStream;
}

namespace mirel::base {

// A failure: where it was detected and what it was.
// Throw it by value, catch it by reference. The texts are 8-bit and are not copied: they are literals, or live as long
// as the exception.
class MIREL_API CException : public CObject {
 public:
  // Takes the source file (path below the source root, without extension), the line, the message and a further text;
  // each text may be null. Throws nothing.
  CException(const char* file, unsigned int line, const char* message, const char* detail) noexcept;
  CException(const CException& other) noexcept;
  virtual ~CException();
  CException& operator=(const CException& other) noexcept;

  const CClass* GetClass() const override;
  // Prints one line: the class, and of message, detail and place those that are known.
  virtual void Print(io::CPrintStream& stream) const;

  // The file of the throw site, or null.
  const char* GetSourceFile() const noexcept { return m_file; }
  unsigned int GetSourceLine() const noexcept { return m_line; }
  // The message, or null when the failure has none.
  const char* GetMessageText() const noexcept { return m_message; }
  const char* GetDetail() const noexcept { return m_detail; }

  static CClass m_classCException;

 protected:
  // Prints the line without its end, so that a derived class can append to it.
  void PrintFacts(io::CPrintStream& stream) const;

 private:
  const char* m_file;
  unsigned int m_line;
  const char* m_message;
  const char* m_detail;
};

// Prints a failure that must not reach the caller to CSystem::debugOut, if there is such a stream.
// Throws nothing, even when the stream does.
MIREL_API void PrintToDebugOut(const CException& exception) noexcept;

}  // namespace mirel::base
