// A stream that keeps what is printed.
#pragma once

#include <mirel/io/PrintStream.h>

#include <string>

namespace tests {

class TextStream : public mirel::io::CPrintStream {
 public:
  void Print(const char* text) override { m_text += text; }
  const std::string& Text() const { return m_text; }

 private:
  std::string m_text;
};

}  // namespace tests
