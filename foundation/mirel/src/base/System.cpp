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

// Failures are reported while static objects are made and ended, too: the stream is there from load to unload.
union FromLoadToUnload {
  constexpr FromLoadToUnload() : stream() {}
  ~FromLoadToUnload() {}

  StandardErrorStream stream;
};

FromLoadToUnload s_standardError;

}  // namespace

io::CPrintStream* CSystem::debugOut = &s_standardError.stream;

}  // namespace mirel::base
