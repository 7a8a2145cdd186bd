// What a host can do wrong, on the real operating system. Each mistake is refused with its own message and leaks
// nothing, and the object can be used afterwards.

#include <mirel/base/IllegalArgumentException.h>
#include <torvan/JavaVmLauncherException.h>
#include <torvan/jvmlauncher/options/ClassPathOption.h>

#include "fakes/Allocations.h"
#include "fakes/Failure.h"
#include "jvmlauncher/LaunchSystemTest.h"
#include "jvmlauncher/Resources.h"

namespace tests {

using namespace torvan::jvmlauncher;
using mirel::base::CIllegalArgumentException;

namespace {

namespace fs = std::filesystem;

enum class Runtime { Installed, WithoutProgram };

struct Row {
  const char* name;
  Runtime runtime;
  void (*provoke)(CJavaVmLauncher& launcher, CJavaVmProcess& running);
  Failure failure;
};

void LaunchNothing(CJavaVmLauncher& launcher, const RX::UniChar* mainClass) {
  CJavaVmOptions options;
  options.AddOption(options::CClassPathOption());
  launcher.Launch(options, mainClass, {});
}

class JavaVmLauncherBadInputTest : public LaunchSystemTest, public testing::WithParamInterface<Row> {
 protected:
  // Makes the row's mistake, with the runtime in the row's state.
  Failure Provoke(CJavaVmLauncher& launcher, CJavaVmProcess& running) {
    const fs::path program = s_runtime->Program();
    const fs::path hidden = program.string() + ".hidden";
    if (GetParam().runtime == Runtime::WithoutProgram) fs::rename(program, hidden);
    const Failure failure = FailureOf([&] { GetParam().provoke(launcher, running); });
    if (GetParam().runtime == Runtime::WithoutProgram) fs::rename(hidden, program);
    return failure;
  }
};

TEST_P(JavaVmLauncherBadInputTest, IsRefusedLeavesNothingAndSpoilsNothing) {
  SetProbe(60000, 5);
  CJavaVmLauncher launcher(RX_TEXT("99"));
  const Process running = launcher.Launch({}, RX_TEXT("Main"), {});
  // The first time, the system may allocate what it then keeps.
  EXPECT_EQ(Provoke(launcher, *running), GetParam().failure);
  const Resources before = MeasureResources();
  {
    const Allocations allocations;
    for (int i = 0; i < 5; ++i) EXPECT_EQ(Provoke(launcher, *running), GetParam().failure);
    EXPECT_EQ(allocations.Live(), 0u);
  }
  const Resources after = MeasureResources();
  EXPECT_EQ(after.handles, before.handles);
  EXPECT_EQ(after.zombies, 0);

  SetProbe(0, 3);
  const Process next = launcher.Launch({}, RX_TEXT("Main"), {});
  next->Wait();
  EXPECT_EQ(next->GetExitCode(), 3);
  EXPECT_FALSE(running->Wait(0));
  running->Kill();
  running->Wait();
  EXPECT_EQ(running->GetExitCode(), 0);
}

// clang-format off
const Row Rows[] = {
    {"VersionNull", Runtime::Installed,
     [](CJavaVmLauncher&, CJavaVmProcess&) { CJavaVmLauncher another(nullptr); },
     Throws<CIllegalArgumentException>(LaunchTag, 133, "Invalid vm version.")},
    {"VersionEmpty", Runtime::Installed,
     [](CJavaVmLauncher&, CJavaVmProcess&) { CJavaVmLauncher another(RX_TEXT("")); },
     Throws<CIllegalArgumentException>(LaunchTag, 133, "Invalid vm version.")},
    {"NothingCompatible", Runtime::Installed,
     [](CJavaVmLauncher&, CJavaVmProcess&) { CJavaVmLauncher another(RX_TEXT("1000")); },
     Throws<CJavaVmLauncherException>(
         LaunchTag, 217, "There is no installed Java VM which is compatible with the specified version.")},
    {"NeitherMainClassNorJar", Runtime::Installed,
     [](CJavaVmLauncher& launcher, CJavaVmProcess&) { LaunchNothing(launcher, nullptr); },
     Throws<CJavaVmLauncherException>(
         LaunchTag, 159,
         "Java application cannot be launched because neither main class name nor jar option specified.")},
    {"MainClassEmptyAndNoJar", Runtime::Installed,
     [](CJavaVmLauncher& launcher, CJavaVmProcess&) { LaunchNothing(launcher, RX_TEXT("")); },
     Throws<CJavaVmLauncherException>(
         LaunchTag, 159,
         "Java application cannot be launched because neither main class name nor jar option specified.")},
    {"ProgramThatVanished", Runtime::WithoutProgram,
     [](CJavaVmLauncher& launcher, CJavaVmProcess&) { launcher.Launch({}, RX_TEXT("Main"), {}); },
     Throws<CJavaVmLauncherException>(
         LaunchTag, 186, "Failed to launch the required Java Vm with the specified vm options and arguments.")},
    {"ExitCodeOfARunningProgram", Runtime::Installed,
     [](CJavaVmLauncher&, CJavaVmProcess& running) { running.GetExitCode(); },
     Throws<CIllegalArgumentException>(LaunchTag, 111, "No Wait called.")},
    {"ExitCodeAfterATimeOut", Runtime::Installed,
     [](CJavaVmLauncher&, CJavaVmProcess& running) { EXPECT_FALSE(running.Wait(0)); running.GetExitCode(); },
     Throws<CIllegalArgumentException>(LaunchTag, 111, "No Wait called.")},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Host, JavaVmLauncherBadInputTest, testing::ValuesIn(Rows),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace tests
