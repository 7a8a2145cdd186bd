#include <gtest/gtest.h>
#include <mirel/Mirel.h>
#include <mirel/base/System.h>

#include <stdexcept>

#include "fakes/DebugOut.h"

namespace tests {
namespace {

using mirel::base::CSystem;

class FlushCounter : public DebugOut {
 public:
  void Flush() override { ++flushes; }

  int flushes = 0;
};

TEST(MirelTest, UsesAreCountedAndTheLastOneFlushesTheDebugStream) {
  FlushCounter stream;
  EXPECT_EQ(mirel::Terminate(), 0);
  EXPECT_EQ(mirel::Initialize(), 1);
  EXPECT_EQ(mirel::Initialize(), 2);
  EXPECT_EQ(mirel::Terminate(), 1);
  EXPECT_EQ(stream.flushes, 0);
  EXPECT_EQ(mirel::Terminate(), 0);
  EXPECT_EQ(stream.flushes, 1);
  EXPECT_EQ(mirel::Terminate(), 0);
  EXPECT_EQ(stream.flushes, 1);
}

TEST(MirelTest, TerminatingNeedsNoStreamAndBearsAFailingOne) {
  class BrokenStream : public DebugOut {
   public:
    void Flush() override { throw std::runtime_error("broken"); }
  } broken;
  EXPECT_EQ(mirel::Initialize(), 1);
  EXPECT_EQ(mirel::Terminate(), 0);
  CSystem::debugOut = nullptr;
  EXPECT_EQ(mirel::Initialize(), 1);
  EXPECT_EQ(mirel::Terminate(), 0);
}

}  // namespace
}  // namespace tests
