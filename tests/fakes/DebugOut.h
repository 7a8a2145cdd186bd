// The debug stream, kept for reading.
#pragma once

#include <mirel/base/System.h>
#include <mirel/io/PrintStream.h>

#include <string>
#include <utility>

namespace tests {

// Collects what is printed to CSystem::debugOut while it lives.
class DebugOut : public mirel::io::CPrintStream {
 public:
  DebugOut() : m_previous(std::exchange(mirel::base::CSystem::debugOut, this)) {}
  ~DebugOut() override { mirel::base::CSystem::debugOut = m_previous; }
  DebugOut(const DebugOut&) = delete;
  DebugOut& operator=(const DebugOut&) = delete;

  void Print(const char* text) override { m_text += text; }

  const std::string& Text() const { return m_text; }

 private:
  mirel::io::CPrintStream* m_previous;
  std::string m_text;
};

}  // namespace tests
