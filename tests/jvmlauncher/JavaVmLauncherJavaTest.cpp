// Launches of the machine's own Java.

#include <torvan/jvmlauncher/options/ClassPathOption.h>
#include <torvan/jvmlauncher/options/JarOption.h>
#include <torvan/jvmlauncher/options/NonStandardOption.h>
#include <torvan/jvmlauncher/options/SystemPropertyOption.h>

#include "jvmlauncher/JavaVmLauncherJavaTest.h"

namespace tests {

using namespace torvan::jvmlauncher;
using namespace torvan::jvmlauncher::options;
using testing::ElementsAre;

namespace {

const std::string Separator = OnThisSystem(";", ":");

TEST_F(JavaVmLauncherJavaTest, AMainClassIsRunFromAClassPathWithSpaces) {
  ASSERT_NE(std::string(TORVAN_LAUNCH_CLASSES).find(' '), std::string::npos);
  CClassPathOption classPath;
  classPath.AddEntry(RX_TEXT("/not there"));
  classPath.AddEntry(Widen(TORVAN_LAUNCH_CLASSES).c_str());
  CJavaVmOptions options;
  options.AddOption(classPath);
  CArgumentList arguments;
  arguments.Append(RX_TEXT("two words"));
  arguments.Append(Place::Location(RX_TEXT("/a/path")));
  arguments.Append(RX_TEXT("say \\\"hi\\\""));
  const Process process = Launch(options, RX_TEXT("LaunchProbe"), arguments);
  process->Wait();
  EXPECT_EQ(process->GetExitCode(), 0);
  EXPECT_THAT(ReadReport(Report()), ElementsAre("/not there" + Separator + TORVAN_LAUNCH_CLASSES + Separator,
                                                "two words", "/a/path", "say \"hi\""));
}

TEST_F(JavaVmLauncherJavaTest, PropertiesReachTheProgramWithTheirSpaces) {
  Set("LAUNCH_PROBE_PROPERTIES", "a.b,c,missing");
  CJavaVmOptions options = WithClasses();
  options.AddOption(CSystemPropertyOption(RX_TEXT("a.b"), RX_TEXT("x  y=z")));
  options.AddOption(CSystemPropertyOption(RX_TEXT("c"), Place::Location(RX_TEXT("/my folder/c"))));
  options.AddOption(CNonStandardOption(RX_TEXT("mx64m")));
  const Process process = Launch(options, RX_TEXT("LaunchProbe"), {});
  process->Wait();
  EXPECT_EQ(process->GetExitCode(), 0);
  EXPECT_THAT(ReadReport(Report()), ElementsAre(TORVAN_LAUNCH_CLASSES + Separator, "x  y=z", "/my folder/c", "null"));
}

TEST_F(JavaVmLauncherJavaTest, AJarRunsWithoutAMainClass) {
  CJavaVmOptions options;
  options.AddOption(CJarOption(Place::Location(Widen(TORVAN_LAUNCH_JAR).c_str())));
  CArgumentList arguments;
  arguments.Append(RX_TEXT("1"));
  const Process process = Launch(options, nullptr, arguments);
  process->Wait();
  EXPECT_EQ(process->GetExitCode(), 0);
  EXPECT_THAT(ReadReport(Report()), ElementsAre(TORVAN_LAUNCH_JAR, "1"));
}

TEST_F(JavaVmLauncherJavaTest, TheExitCodeIsThatOfSystemExit) {
  Set("LAUNCH_PROBE_EXIT", "42");
  const Process process = Launch(WithClasses(), RX_TEXT("LaunchProbe"), {});
  process->Wait();
  EXPECT_EQ(process->GetExitCode(), 42);
}

TEST_F(JavaVmLauncherJavaTest, AMainClassThatIsNotThereIsTheProgramsFailureAndNotTheLaunchs) {
  const Process process = Launch(WithClasses(), RX_TEXT("NotThere"), {});
  process->Wait();
  EXPECT_EQ(process->GetExitCode(), 1);
}

TEST_F(JavaVmLauncherJavaTest, AKilledProgramEndsWithZero) {
  Set("LAUNCH_PROBE_MILLISECONDS", "60000");
  Set("LAUNCH_PROBE_EXIT", "5");
  const Process process = Launch(WithClasses(), RX_TEXT("LaunchProbe"), {});
  ReadReport(Report());
  process->Kill();
  process->Wait();
  EXPECT_EQ(process->GetExitCode(), 0);
}

TEST_F(JavaVmLauncherJavaTest, AProgramOutlivesTheLastReference) {
  { const Process process = Launch(WithClasses(), RX_TEXT("LaunchProbe"), {}); }
  // Java takes longer to start than the reference lives: it reports when no reference is left.
  EXPECT_THAT(ReadReport(Report()), ElementsAre(TORVAN_LAUNCH_CLASSES + Separator));
}

}  // namespace
}  // namespace tests
