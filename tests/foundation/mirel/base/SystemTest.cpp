#include <gtest/gtest.h>
#include <mirel/Mirel.h>
#include <mirel/base/System.h>
#include <mirel/io/PrintStream.h>

#include <cstdlib>

#include "fakes/DebugOut.h"

namespace tests {
namespace {

using mirel::base::CSystem;

// Runs before main, while static objects are made; Flush crashes if the stream does not exist yet.
mirel::io::CPrintStream* const s_streamBeforeMain = [] {
  CSystem::debugOut->Flush();
  return CSystem::debugOut;
}();

TEST(SystemTest, TheDebugStreamIsThereBeforeMainAndIsTheSameAfterwards) {
  EXPECT_NE(s_streamBeforeMain, nullptr);
  EXPECT_EQ(s_streamBeforeMain, CSystem::debugOut);
}

TEST(SystemDeathTest, TheDebugStreamIsTheStandardErrorStream) {
  EXPECT_EXIT(
      {
        CSystem::debugOut->Print("as it ");
        CSystem::debugOut->PrintLine("stands %d");
        std::_Exit(0);
      },
      ::testing::ExitedWithCode(0), "^as it stands %d\n$");
}

const struct PrintsAtItsEnd {
  ~PrintsAtItsEnd() {
    if (prints) CSystem::debugOut->PrintLine("printed at the end");
  }
  mutable bool prints = false;
} s_staticObject;

TEST(SystemDeathTest, TheDebugStreamIsStillThereWhileStaticObjectsEnd) {
  EXPECT_EXIT(
      {
        CSystem::debugOut->Flush();
        mirel::Initialize();
        mirel::Terminate();
        s_staticObject.prints = true;
        std::exit(0);
      },
      ::testing::ExitedWithCode(0), "^printed at the end\n$");
}

TEST(SystemTest, AHostsStreamTakesWhatIsPrinted) {
  DebugOut stream;
  CSystem::debugOut->PrintLine("text");
  EXPECT_EQ(stream.Text(), "text\n");
}

}  // namespace
}  // namespace tests
