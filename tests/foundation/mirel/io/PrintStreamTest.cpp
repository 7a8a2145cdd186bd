#include <gtest/gtest.h>
#include <mirel/io/PrintStream.h>

#include <string>

namespace tests {
namespace {

TEST(PrintStreamTest, EndingALineIsOnePrintMore) {
  class Pieces : public mirel::io::CPrintStream {
   public:
    void Print(const char* text) override { pieces += std::string("[") + text + "]"; }

    std::string pieces;
  } stream;
  stream.PrintLine("a line");
  stream.Flush();
  EXPECT_EQ(stream.pieces, "[a line][\n]");
}

}  // namespace
}  // namespace tests
