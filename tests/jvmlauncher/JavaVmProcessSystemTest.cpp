// Launched processes on the real operating system: waiting, ending, handles.

#include <mirel/base/IllegalArgumentException.h>
#include <torvan/JavaVmLauncherException.h>

#include <chrono>
#include <cstdlib>

#include "fakes/Allocations.h"
#include "fakes/Failure.h"
#include "jvmlauncher/LaunchSystemTest.h"
#include "jvmlauncher/Resources.h"

namespace tests {

using namespace torvan::jvmlauncher;
using mirel::base::CIllegalArgumentException;

namespace {

namespace fs = std::filesystem;

TEST_F(JavaVmProcessSystemTest, TheExitCodeIsTheProgramsOwn) {
  for (const int exitCode : {0, 1, 7, 255}) {
    SetProbe(0, exitCode);
    const Process process = LaunchMain();
    process->Wait();
    EXPECT_EQ(process->GetExitCode(), exitCode);
  }
}

TEST_F(JavaVmProcessSystemTest, AWaitForARunningProgramTimesOut) {
  SetProbe(LongMilliseconds, 5);
  const Process process = LaunchMain();
  EXPECT_FALSE(process->Wait(0));
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(process->Wait(200));
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(190));
  EXPECT_EQ(FailureOf([&] { process->GetExitCode(); }),
            Throws<CIllegalArgumentException>(LaunchTag, 111, "No Wait called."));
  process->Kill();
  process->Wait();
}

TEST_F(JavaVmProcessSystemTest, AKilledProgramEndsWithZero) {
  SetProbe(LongMilliseconds, 5);
  const Process process = LaunchMain();
  process->Kill();
  process->Wait();
  EXPECT_EQ(process->GetExitCode(), 0);
  process->Kill();
  EXPECT_TRUE(process->Wait(0));
  EXPECT_EQ(process->GetExitCode(), 0);
}

TEST_F(JavaVmProcessSystemTest, AProgramThatEndedBeforeItIsKilledKeepsItsExitCode) {
  SetProbe(0, 9);
  const auto report = NewReport();
  const Process process = LaunchMain();
  process->Wait();
  process->Kill();
  process->Wait();
  EXPECT_EQ(process->GetExitCode(), 9);
}

TEST_F(JavaVmProcessSystemTest, StopReturnsAtOnceWhateverTheProgramDoes) {
  SetProbe(LongMilliseconds, 5);
  const auto report = NewReport();
  const Process process = LaunchMain();
  ReadReport(report);
  process->Stop();
  EXPECT_EQ(FailureOf([&] { process->GetExitCode(); }),
            Throws<CIllegalArgumentException>(LaunchTag, 111, "No Wait called."));
  process->Kill();
  EXPECT_TRUE(process->Wait(10000));
}

TEST_F(JavaVmProcessSystemTest, AProgramOutlivesTheLastReference) {
  SetProbe(500, 0);
  const auto report = NewReport();
  const fs::path done = report.string() + ".done";
  {
    const Process process = LaunchMain();
    ReadReport(report);
    EXPECT_FALSE(process->Wait(0));
  }
  EXPECT_FALSE(fs::exists(done));
  EXPECT_TRUE(ReadReport(done).empty());
}

TEST_F(JavaVmProcessSystemTest, TheProgramWorksInTheHostsCurrentDirectory) {
  const fs::path before = fs::current_path();
  fs::current_path(s_runtime->Folder());
  SetEnvironment("LAUNCH_PROBE_REPORT", "relative report");
  const Process process = LaunchMain();
  process->Wait();
  fs::current_path(before);
  EXPECT_FALSE(ReadReport(s_runtime->Folder() / "relative report").empty());
}

TEST_F(JavaVmProcessSystemTest, NoHandleIsInherited) {
  int ends[2];
  ASSERT_TRUE(MakePipe(ends));
  SetProbe(LongMilliseconds, 0);
  const Process process = LaunchMain();
  // The reading end sees the end of the pipe only when no process holds the writing end.
  CloseEnd(ends[1]);
  EXPECT_TRUE(IsAtItsEnd(ends[0]));
  CloseEnd(ends[0]);
  EXPECT_FALSE(process->Wait(0));
  process->Kill();
  process->Wait();
}

TEST_F(JavaVmProcessSystemTest, SeveralProgramsRunAtOnceAndAreWaitedForInAnyOrder) {
  std::vector<Process> processes;
  for (int i = 0; i < 5; ++i) {
    SetProbe(50 * i, i);
    processes.push_back(LaunchMain());
  }
  for (int i = 4; i >= 0; --i) {
    processes[static_cast<std::size_t>(i)]->Wait();
    EXPECT_EQ(processes[static_cast<std::size_t>(i)]->GetExitCode(), i);
  }
}

// Launches in a row: 60, or as many as the environment's TORVAN_LAUNCHES says.
TEST_F(JavaVmProcessSystemTest, ManyLaunchesLeaveNothingBehind) {
  const char* const wanted = std::getenv("TORVAN_LAUNCHES");
  const int launches = wanted != nullptr ? std::atoi(wanted) : 60;
  ASSERT_GE(launches, 20);
  CJavaVmLauncher launcher(RX_TEXT("99"));
  const auto launch = [&] {
    const Process process = launcher.Launch({}, RX_TEXT("Main"), ListOf({"an argument"}));
    process->Wait();
    ASSERT_EQ(process->GetExitCode(), 0);
  };
  // In the first ones, the system may allocate what it then keeps.
  for (int i = 0; i < 10; ++i) launch();
  const Resources before = MeasureResources();
  for (int i = 0; i < launches; ++i) launch();
  const Resources after = MeasureResources();
  std::printf("%d launches: handles %ld -> %ld, zombies %ld -> %ld, memory %ld -> %ld KiB\n", launches, before.handles,
              after.handles, before.zombies, after.zombies, before.memory, after.memory);
  EXPECT_EQ(after.handles, before.handles);
  EXPECT_EQ(after.zombies, 0);
  EXPECT_LE(after.memory, before.memory + 256);

  const Allocations allocations;
  for (int i = 0; i < 10; ++i) launch();
  EXPECT_EQ(allocations.Live(), 0u);
}

}  // namespace
}  // namespace tests
