// Splits a command line into its arguments.
#pragma once

namespace torvan::platform {

// Splits a UTF-8 command line as a Windows program splits its own.
//
// Blanks and tabs outside double quotes separate arguments. In the first argument, the program, a double quote begins
// or ends a quoted stretch and a backslash is a backslash. In the others backslashes before a double quote are counted:
// each two become one backslash, and an odd one left over makes the quote a character of the argument. Any other quote
// begins or ends a quoted stretch, and two of them within a stretch become one quote. Quotes around nothing are an
// empty argument; a quoted stretch may end with the line.
class CommandLine {
 public:
  // Throws CMemoryException.
  explicit CommandLine(const char* text);
  ~CommandLine();
  CommandLine(const CommandLine&) = delete;
  CommandLine& operator=(const CommandLine&) = delete;

  // The arguments, the program first, and a null pointer after the last; they live as long as this object.
  char* const* GetArguments() const { return m_arguments; }

 private:
  char** m_arguments;  // one block: the pointers, then the texts
};

}  // namespace torvan::platform
