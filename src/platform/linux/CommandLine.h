// The arguments that a command line stands for.
#pragma once

namespace torvan::platform {

// Splits a UTF-8 command line as a Windows program splits its own.
//
// Blanks and tabs outside double quotes separate arguments. In the first argument, the program, a double quote begins
// or ends a quoted stretch and a backslash is a backslash. In the others backslashes before a double quote are counted:
// each two give one backslash, and an odd one left over makes the quote a character of the argument. A quote that is
// not one begins or ends a quoted stretch, and two of them within a stretch give one quote. Quotes around nothing give
// an empty argument; a quoted stretch may end with the line.
class CommandLine {
 public:
  // Throws CMemoryException.
  explicit CommandLine(const char* text);
  ~CommandLine();
  CommandLine(const CommandLine&) = delete;
  CommandLine& operator=(const CommandLine&) = delete;

  // The arguments, the program first, and a null pointer behind the last; they live as long as this object.
  char* const* GetArguments() const { return m_arguments; }

 private:
  char** m_arguments;  // one block: the pointers, and behind them the texts
};

}  // namespace torvan::platform
