// Launched processes on Linux: signals, and hosts that reap or fork.

#include <mirel/base/IllegalArgumentException.h>
#include <sys/wait.h>
#include <torvan/JavaVmLauncherException.h>
#include <unistd.h>

#include <csignal>

#include "fakes/Failure.h"
#include "jvmlauncher/LaunchSystemTest.h"
#include "jvmlauncher/Resources.h"

namespace tests {

using namespace torvan::jvmlauncher;
using mirel::base::CIllegalArgumentException;

namespace {

TEST_F(JavaVmProcessSystemTest, AProgramThatASignalEndsReads128AndItsNumberAndLeavesNothing) {
  const Resources before = MeasureResources();
  for (const int signal : {SIGTERM, SIGABRT, SIGSEGV, SIGKILL}) {
    SCOPED_TRACE(signal);
    SetEnvironment("LAUNCH_PROBE_SIGNAL", std::to_string(signal));
    const Process process = LaunchMain();
    process->Wait();
    EXPECT_EQ(process->GetExitCode(), 128 + signal);
  }
  UnsetEnvironment("LAUNCH_PROBE_SIGNAL");
  SetProbe(LongMilliseconds, 5);
  const auto report = NewReport();
  {
    const Process process = LaunchMain();
    ReadReport(report);
    process->Stop();
    process->Wait();
    EXPECT_EQ(process->GetExitCode(), 128 + SIGINT);
  }
  const Resources after = MeasureResources();
  EXPECT_EQ(after.handles, before.handles);
  EXPECT_EQ(after.zombies, 0);
}

TEST_F(JavaVmProcessSystemTest, AHostThatIgnoresSigchldLosesTheExitCode) {
  SetProbe(0, 7);
  const auto before = std::signal(SIGCHLD, SIG_IGN);
  const Process process = LaunchMain();
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(FailureOf([&] { process->Wait(); }),
              Throws<CIllegalArgumentException>(LaunchTag, 97, "GetExitCodeProcess failed."));
    EXPECT_EQ(process->GetExitCode(), 0);
  }
  process->Kill();
  process->Stop();
  std::signal(SIGCHLD, before);
}

TEST_F(JavaVmProcessSystemTest, AHostThatReapsTheProgramLosesTheExitCode) {
  SetProbe(0, 7);
  const Process process = LaunchMain();
  while (waitpid(-1, nullptr, 0) > 0) {
  }
  EXPECT_EQ(FailureOf([&] { process->Wait(1000); }),
            Throws<CIllegalArgumentException>(LaunchTag, 97, "GetExitCodeProcess failed."));
  EXPECT_EQ(process->GetExitCode(), 0);
}

TEST_F(JavaVmProcessSystemTest, AForkedWorkerCannotWaitForAProgramOfItsParentAndDoesItNoHarm) {
  SetProbe(300, 7);
  Process process = LaunchMain();
  const pid_t worker = fork();
  if (worker == 0) {
    const bool isRefused = FailureOf([&] { process->Wait(); }) ==
                           Throws<CIllegalArgumentException>(LaunchTag, 92, "WaitForSignleObjects returned error.");
    process->Kill();
    process->Stop();
    process = nullptr;
    _exit(isRefused ? 0 : 1);
  }
  int status = 0;
  EXPECT_EQ(waitpid(worker, &status, 0), worker);
  EXPECT_EQ(status, 0);
  process->Wait();
  EXPECT_EQ(process->GetExitCode(), 7);
}

}  // namespace
}  // namespace tests
