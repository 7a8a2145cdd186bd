// Launches of an installed Java on Windows.
#include "jvmlauncher/JavaVmLauncherJavaTest.h"

namespace tests {
namespace {

TEST_F(JavaVmLauncherJavaTest, StopDoesNotReachAProgramWithoutAConsole) {
  Set("LAUNCH_PROBE_MILLISECONDS", "60000");
  const Process process = Launch(WithClasses(), RX_TEXT("LaunchProbe"), {});
  ReadReport(Report());
  process->Stop();
  EXPECT_FALSE(process->Wait(1000));
  process->Kill();
  EXPECT_TRUE(process->Wait(30000));
}

}  // namespace
}  // namespace tests
