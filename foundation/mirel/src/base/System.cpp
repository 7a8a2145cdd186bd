#include <mirel/base/System.h>

#include <mirel/io/PrintStream.h>

#include <cstdio>

namespace mirel::base {
namespace {

class StandardErrorStream : public io::CPrintStream {
 public:
  constexpr StandardErrorStream() = default;

  void Print(const char* text) override { std::fputs(text, stderr); }
  void Flush() override { std::fflush(stderr); }
};

// Static objects and threads that outlive main report failures, too: the stream is constant-initialised and never
// destroyed.
union FromLoadToUnload {
  constexpr FromLoadToUnload() : stream() {}
  ~FromLoadToUnload() {}

  StandardErrorStream stream;
};

FromLoadToUnload s_standardError;

}  // namespace

io::CPrintStream* CSystem::debugOut = &s_standardError.stream;

}  // namespace mirel::base
