// Launches of the machine's own Java.

#include <torvan/jvmlauncher/options/ClassPathOption.h>
#include <torvan/jvmlauncher/options/JarOption.h>
#include <torvan/jvmlauncher/options/NonStandardOption.h>
#include <torvan/jvmlauncher/options/SystemPropertyOption.h>

#include <fstream>

#include "jvmlauncher/LaunchSystemTest.h"

namespace tests {

using namespace torvan::jvmlauncher;
using namespace torvan::jvmlauncher::options;
using testing::ElementsAre;

namespace {

namespace fs = std::filesystem;

#if defined(_WIN32)
#define LIST_SEPARATOR ";"
#else
#define LIST_SEPARATOR ":"
#endif

class JavaSystemTest : public testing::Test {
 protected:
  void SetUp() override {
    fs::remove_all(m_folder);
    fs::create_directories(m_folder);
    Set("LAUNCH_PROBE_REPORT", TORVAN_LAUNCH_REPORTS "/report");  // read by Java, which wants no backslash
  }
  void TearDown() override {
    fs::remove_all(m_folder);
    for (const std::string& name : m_names) UnsetEnvironment(name.c_str());
  }

  void Set(const std::string& name, const std::string& value) {
    SetEnvironment(name.c_str(), value);
    m_names.push_back(name);
  }
  fs::path Report() const { return m_folder / "report"; }

  // Options with the fixture's class path, which has a space.
  static CJavaVmOptions WithClasses() {
    CClassPathOption classPath;
    classPath.AddEntry(Widen(TORVAN_LAUNCH_CLASSES).c_str());
    CJavaVmOptions options;
    options.AddOption(classPath);
    return options;
  }

  static Process Launch(const CJavaVmOptions& options, const RX::UniChar* mainClass, const CArgumentList& arguments) {
    return CJavaVmLauncher(RX_TEXT("1.8")).Launch(options, mainClass, arguments);
  }

  const fs::path m_folder = TORVAN_LAUNCH_REPORTS;

 private:
  std::vector<std::string> m_names;
};

TEST_F(JavaSystemTest, AMainClassIsRunFromAClassPathWithSpaces) {
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
  EXPECT_THAT(ReadReport(Report()), ElementsAre("/not there" LIST_SEPARATOR TORVAN_LAUNCH_CLASSES LIST_SEPARATOR,
                                                "two words", "/a/path", "say \"hi\""));
}

TEST_F(JavaSystemTest, PropertiesReachTheProgramWithTheirSpaces) {
  Set("LAUNCH_PROBE_PROPERTIES", "a.b,c,missing");
  CJavaVmOptions options = WithClasses();
  options.AddOption(CSystemPropertyOption(RX_TEXT("a.b"), RX_TEXT("x  y=z")));
  options.AddOption(CSystemPropertyOption(RX_TEXT("c"), Place::Location(RX_TEXT("/my folder/c"))));
  options.AddOption(CNonStandardOption(RX_TEXT("mx64m")));
  const Process process = Launch(options, RX_TEXT("LaunchProbe"), {});
  process->Wait();
  EXPECT_EQ(process->GetExitCode(), 0);
  EXPECT_THAT(ReadReport(Report()),
              ElementsAre(TORVAN_LAUNCH_CLASSES LIST_SEPARATOR, "x  y=z", "/my folder/c", "null"));
}

TEST_F(JavaSystemTest, AJarRunsWithoutAMainClass) {
  CJavaVmOptions options;
  options.AddOption(CJarOption(Place::Location(Widen(TORVAN_LAUNCH_JAR).c_str())));
  CArgumentList arguments;
  arguments.Append(RX_TEXT("1"));
  const Process process = Launch(options, nullptr, arguments);
  process->Wait();
  EXPECT_EQ(process->GetExitCode(), 0);
  EXPECT_THAT(ReadReport(Report()), ElementsAre(TORVAN_LAUNCH_JAR, "1"));
}

TEST_F(JavaSystemTest, TheExitCodeIsThatOfSystemExit) {
  Set("LAUNCH_PROBE_EXIT", "42");
  const Process process = Launch(WithClasses(), RX_TEXT("LaunchProbe"), {});
  process->Wait();
  EXPECT_EQ(process->GetExitCode(), 42);
}

TEST_F(JavaSystemTest, AMainClassThatIsNotThereIsTheProgramsFailureAndNotTheLaunchs) {
  const Process process = Launch(WithClasses(), RX_TEXT("NotThere"), {});
  process->Wait();
  EXPECT_EQ(process->GetExitCode(), 1);
}

#if defined(_WIN32)
TEST_F(JavaSystemTest, StopDoesNotReachAProgramWithoutAConsole) {
  Set("LAUNCH_PROBE_MILLISECONDS", "60000");
  const Process process = Launch(WithClasses(), RX_TEXT("LaunchProbe"), {});
  ReadReport(Report());
  process->Stop();
  EXPECT_FALSE(process->Wait(1000));
  process->Kill();
  EXPECT_TRUE(process->Wait(30000));
}
#else
TEST_F(JavaSystemTest, ARuntimeWithAVersionTooLongToBeListedHidesNoOther) {
  fs::create_directories(m_folder / "lib/server");
  std::ofstream(m_folder / "lib/server/libjvm.so");
  std::ofstream(m_folder / "release") << "JAVA_VERSION=\"99." << std::string(253, '0') << "\"\n";
  Set("JAVA_HOME", m_folder.string());
  const Process process = Launch(WithClasses(), RX_TEXT("LaunchProbe"), {});
  process->Wait();
  EXPECT_EQ(process->GetExitCode(), 0);
}

TEST_F(JavaSystemTest, StopEndsAProgramThatRunsUntilItIsStopped) {
  Set("LAUNCH_PROBE_MILLISECONDS", "60000");
  const Process process = Launch(WithClasses(), RX_TEXT("LaunchProbe"), {});
  ReadReport(Report());
  EXPECT_FALSE(process->Wait(0));
  process->Stop();
  ASSERT_TRUE(process->Wait(30000));
  EXPECT_EQ(process->GetExitCode(), 130);
}
#endif

TEST_F(JavaSystemTest, AKilledProgramEndsWithZero) {
  Set("LAUNCH_PROBE_MILLISECONDS", "60000");
  Set("LAUNCH_PROBE_EXIT", "5");
  const Process process = Launch(WithClasses(), RX_TEXT("LaunchProbe"), {});
  ReadReport(Report());
  process->Kill();
  process->Wait();
  EXPECT_EQ(process->GetExitCode(), 0);
}

TEST_F(JavaSystemTest, AProgramOutlivesTheLastReference) {
  { const Process process = Launch(WithClasses(), RX_TEXT("LaunchProbe"), {}); }
  // Java takes longer to start than the reference lives: it reports when nobody refers to it any more.
  EXPECT_THAT(ReadReport(Report()), ElementsAre(TORVAN_LAUNCH_CLASSES LIST_SEPARATOR));
}

}  // namespace
}  // namespace tests
