// Launched processes on Windows: 32-bit exit codes, and the registry's view for 32-bit programs.

#include <torvan/JavaVmLauncherException.h>

#include "fakes/Failure.h"
#include "jvmlauncher/LaunchSystemTest.h"

namespace tests {

using namespace torvan::jvmlauncher;

namespace {

TEST_F(JavaVmProcessSystemTest, AnExitCodeHas32Bits) {
  SetProbe(0, -1073741819);
  const Process process = LaunchMain();
  process->Wait();
  EXPECT_EQ(process->GetExitCode(), -1073741819);
}

TEST_F(JavaVmProcessSystemTest, ARuntimeOfThe32BitViewIsFound) {
  EXPECT_EQ(FailureOf([] { CJavaVmLauncher launcher(RX_TEXT("100")); }),
            Throws<CJavaVmLauncherException>(
                LaunchTag, 217, "There is no installed Java VM which is compatible with the specified version."));
  s_runtime->RegisterIn32BitView("100.2.3_4");
  CJavaVmLauncher launcher(RX_TEXT("100.2"));
  const auto report = NewReport();
  launcher.Launch({}, RX_TEXT("Main"), {})->Wait();
  EXPECT_EQ(ReadReport(report).size(), 2u);
}

}  // namespace
}  // namespace tests
