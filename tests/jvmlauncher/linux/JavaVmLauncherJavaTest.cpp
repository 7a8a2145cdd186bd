// Launches of an installed Java on Linux.
#include <fstream>

#include "jvmlauncher/JavaVmLauncherJavaTest.h"

namespace tests {
namespace {

namespace fs = std::filesystem;

TEST_F(JavaVmLauncherJavaTest, ARuntimeWithAVersionTooLongToBeListedHidesNoOther) {
  fs::create_directories(m_folder / "lib/server");
  std::ofstream(m_folder / "lib/server/libjvm.so");
  std::ofstream(m_folder / "release") << "JAVA_VERSION=\"99." << std::string(253, '0') << "\"\n";
  Set("JAVA_HOME", m_folder.string());
  const Process process = Launch(WithClasses(), RX_TEXT("LaunchProbe"), {});
  process->Wait();
  EXPECT_EQ(process->GetExitCode(), 0);
}

TEST_F(JavaVmLauncherJavaTest, StopEndsAProgramThatRunsUntilItIsStopped) {
  Set("LAUNCH_PROBE_MILLISECONDS", "60000");
  const Process process = Launch(WithClasses(), RX_TEXT("LaunchProbe"), {});
  ReadReport(Report());
  EXPECT_FALSE(process->Wait(0));
  process->Stop();
  ASSERT_TRUE(process->Wait(30000));
  EXPECT_EQ(process->GetExitCode(), 130);
}

}  // namespace
}  // namespace tests
