// A launcher without any registered Java.
#include <torvan/JavaVmLauncherException.h>

#include "fakes/Allocations.h"
#include "fakes/Failure.h"
#include "jvmlauncher/LaunchSystemTest.h"
#include "jvmlauncher/Resources.h"

namespace tests {

using namespace torvan::jvmlauncher;

namespace {

class JavaVmLauncherBadInputNothingInstalledTest : public LaunchSystemTest {};

TEST_F(JavaVmLauncherBadInputNothingInstalledTest, IsRefusedAndLeaksNothing) {
  const auto provoke = [] {
    s_runtime->UnregisterAll();
    const Failure failure = FailureOf([] { CJavaVmLauncher launcher(RX_TEXT("1.5")); });
    s_runtime->RegisterAgain();
    return failure;
  };
  const Failure refused = Throws<CJavaVmLauncherException>("jvmlauncher/JavaVmLauncherImplWin", 204,
                                                           "There is no installed Java VM on the current system.");
  // The first time, the system may allocate what it then keeps.
  EXPECT_EQ(provoke(), refused);
  const Resources before = MeasureResources();
  {
    const Allocations allocations;
    for (int i = 0; i < 5; ++i) EXPECT_EQ(provoke(), refused);
    EXPECT_EQ(allocations.Live(), 0u);
  }
  EXPECT_EQ(MeasureResources().handles, before.handles);
  const Process next = LaunchMain();
  next->Wait();
  EXPECT_EQ(next->GetExitCode(), 0);
}

}  // namespace
}  // namespace tests
