// The choice of a runtime and the command line of a launch.

#include <gmock/gmock.h>
#include <mirel/base/IllegalArgumentException.h>
#include <mirel/base/MemoryException.h>
#include <rx/OutOfMemoryException.h>
#include <torvan/JavaVmLauncherException.h>
#include <torvan/jvmlauncher/JavaVmLauncher.h>

#include <algorithm>

#include "fakes/Allocations.h"
#include "fakes/Failure.h"
#include "fakes/TextRoom.h"
#include "fakes/WideText.h"
#include "jvmlauncher/Installation.h"
#include "jvmlauncher/InstalledJavaVm.h"
#include "jvmlauncher/options/Options.h"

namespace tests {

using namespace torvan::jvmlauncher;
using namespace torvan::jvmlauncher::options;
using mirel::base::CIllegalArgumentException;
using mirel::base::CRef;
using testing::ElementsAre;
using testing::IsEmpty;
using torvan::platform::SystemScope;

namespace {

// In the Microsoft ABI each of several empty bases takes room.
#if defined(_MSC_VER)
static_assert(sizeof(CJavaVmLauncher) == 2 * sizeof(void*), "a launcher is two empty bases and one pointer");
#else
static_assert(sizeof(CJavaVmLauncher) == sizeof(void*), "a launcher is one pointer");
#endif
static_assert(!std::is_copy_constructible_v<CJavaVmLauncher> && !std::is_copy_assignable_v<CJavaVmLauncher>,
              "a launcher is not copied");
static_assert(std::is_convertible_v<const RX::UniChar*, CJavaVmLauncher>,
              "hosts may write a version where a launcher is asked for");

class JavaVmLauncherTest : public testing::Test {
 protected:
  void InstallOne() { Install(m_system, Source64, "1.6.0", "/jre"); }

  // The program that a launcher for this version starts.
  std::string ChosenFor(const char* version) {
    CJavaVmLauncher launcher(Widen(version).c_str());
    const std::string line = LineOf(launcher, CJavaVmOptions(), RX_TEXT("Main"), CArgumentList());
    return line.substr(0, line.rfind(" Main "));
  }

  // The command line that a launch passes to the system.
  std::string LineOf(CJavaVmLauncher& launcher, const CJavaVmOptions& options, const RX::UniChar* mainClass,
                     const CArgumentList& arguments) {
    m_system.AddProcess();
    m_system.ClearLog();
    launcher.Launch(options, mainClass, arguments);
    const std::string start = "StartProcess(";
    const std::string end = ", false, 0)";
    const std::string call = m_system.Log().at(0);
    EXPECT_EQ(call.substr(0, start.size()), start);
    EXPECT_EQ(call.substr(call.size() - end.size()), end);
    return call.substr(start.size(), call.size() - start.size() - end.size());
  }

  FakeSystem m_system;

 private:
  SystemScope m_scope{m_system};
};

CJavaVmOptions OptionsWith(const CJavaVmOption& option) {
  CJavaVmOptions options;
  options.AddOption(option);
  return options;
}

// --- The choice ---

TEST_F(JavaVmLauncherTest, AVersionWithoutTextIsRefusedBeforeTheSystemIsAsked) {
  InstallOne();
  const auto expected = Throws<CIllegalArgumentException>(LaunchTag, 133, "Invalid vm version.");
  EXPECT_EQ(FailureOf([] { CJavaVmLauncher launcher(nullptr); }), expected);
  EXPECT_EQ(FailureOf([] { CJavaVmLauncher launcher(RX_TEXT("")); }), expected);
  EXPECT_THAT(m_system.Log(), IsEmpty());
}

TEST_F(JavaVmLauncherTest, WithoutAnInstalledRuntimeThereIsNoLauncher) {
  EXPECT_EQ(FailureOf([] { CJavaVmLauncher launcher(RX_TEXT("1.5")); }),
            Throws<CJavaVmLauncherException>(LaunchTag, 204, "There is no installed Java VM on the current system."));
}

TEST_F(JavaVmLauncherTest, ABrokenEnumerationCountsAsNoInstalledRuntime) {
  InstallOne();
  m_system.FailEnumeration(Source64, 1, 5);
  EXPECT_EQ(FailureOf([] { CJavaVmLauncher launcher(RX_TEXT("1.5")); }),
            Throws<CJavaVmLauncherException>(LaunchTag, 204, "There is no installed Java VM on the current system."));
}

TEST_F(JavaVmLauncherTest, WithoutACompatibleRuntimeThereIsNoLauncher) {
  Install(m_system, Source64, "1.4.2", "/jre");
  EXPECT_EQ(FailureOf([] { CJavaVmLauncher launcher(RX_TEXT("1.5")); }),
            Throws<CJavaVmLauncherException>(
                LaunchTag, 217, "There is no installed Java VM which is compatible with the specified version."));
}

TEST_F(JavaVmLauncherTest, TheNewestCompatibleRuntimeIsChosenAndNotTheClosest) {
  Install(m_system, Source64, "1.6.0_10", "/new");
  Install(m_system, Source64, "1.5.0", "/close");
  EXPECT_EQ(ChosenFor("1.5"), ProgramIn("/new"));
}

TEST_F(JavaVmLauncherTest, TheNewestMayBeRegisteredInTheSecondSource) {
  Install(m_system, Source64, "1.5.0", "/a");
  Install(m_system, Source32, "1.7.0", "/b");
  EXPECT_EQ(ChosenFor("1.5"), ProgramIn("/b"));
}

TEST_F(JavaVmLauncherTest, ARequestEqualToTheNewestIsServed) {
  Install(m_system, Source64, "1.5.0", "/a");
  Install(m_system, Source64, "1.6.0", "/b");
  EXPECT_EQ(ChosenFor("1.6.0"), ProgramIn("/b"));
}

TEST_F(JavaVmLauncherTest, OfEqualVersionsTheLastInTheSortedListIsChosen) {
  for (int i = 10; i < 40; ++i) {
    Install(m_system, Source64, "1.6.0_" + std::to_string(i), "/jre" + std::to_string(i));
  }
  InstalledJavaVms vms(10, 5);
  ASSERT_EQ(GetInstalledJavaVms(vms), 30);
  EXPECT_EQ(ChosenFor("1.6"), ProgramIn(Narrow(vms[29].home)));
}

TEST_F(JavaVmLauncherTest, TheListHasRoomForTenRuntimesAndGrowsByFive) {
  const auto listsFor = [this](int runtimes) {
    for (int i = 0; i < runtimes; ++i) {
      Install(m_system, Source64, "1." + std::to_string(i), "/jre" + std::to_string(i));
    }
    const Allocations allocations;
    const CJavaVmLauncher launcher(RX_TEXT("1.0"));
    std::vector<std::size_t> capacities;
    for (const Allocations::Block& block : allocations.Taken()) {
      // Texts are shorter than that.
      if (block.size >= 4 * sizeof(InstalledJavaVm)) capacities.push_back(block.size / sizeof(InstalledJavaVm));
    }
    return capacities;
  };
  EXPECT_THAT(listsFor(10), ElementsAre(10));
  EXPECT_THAT(listsFor(16), ElementsAre(10, 15, 20));
}

TEST_F(JavaVmLauncherTest, TheWindowedProgramIsStartedUnchecked) {
  InstallOne();
  const CJavaVmLauncher launcher(RX_TEXT("1.6"));
  EXPECT_THAT(m_system.Log(), testing::Contains(std::string("FileAttributes(") +
                                                OnThisSystem("/jre\\bin\\java.exe", "/jre/bin/java") + ")"));
  EXPECT_THAT(m_system.Log(), testing::Not(testing::Contains(testing::HasSubstr("javaw"))));
  EXPECT_EQ(ChosenFor("1.6"), OnThisSystem("/jre\\bin\\javaw.exe", "/jre/bin/java"));
}

TEST_F(JavaVmLauncherTest, AHomeThatEndsWithASeparatorGetsNoSecondOne) {
  Install(m_system, Source64, "1.6", "/jre");
  m_system.SetValue(KeyOf(Source64, "1.6"), "JavaHome", OnThisSystem("/jre\\", "/jre/"));
  EXPECT_EQ(ChosenFor("1.6"), OnThisSystem("/jre\\bin\\javaw.exe", "/jre/bin/java"));
}

TEST_F(JavaVmLauncherTest, AHomeWithASpaceMakesTheProgramQuoted) {
  Install(m_system, Source64, "1.6", "C:\\Program Files\\Java\\jre6");
  EXPECT_EQ(ChosenFor("1.6"), OnThisSystem("\"C:\\Program Files\\Java\\jre6\\bin\\javaw.exe\"",
                                           "\"C:\\Program Files\\Java\\jre6/bin/java\""));
}

// --- The command line ---

struct LineRow {
  const char* name;
  std::vector<Option> options;
  const RX::UniChar* mainClass;
  std::vector<std::string> arguments;
  std::string rest;  // after the program and one space
};

class JavaVmLauncherLineTest : public JavaVmLauncherTest, public testing::WithParamInterface<LineRow> {};

TEST_P(JavaVmLauncherLineTest, IsProgramOptionsMainClassArguments) {
  InstallOne();
  CJavaVmLauncher launcher(RX_TEXT("1.6"));
  CJavaVmOptions options;
  for (const auto& option : GetParam().options) options.AddOption(*option);
  CArgumentList arguments;
  for (const auto& argument : GetParam().arguments) arguments.Append(Widen(argument).c_str());
  EXPECT_EQ(LineOf(launcher, options, GetParam().mainClass, arguments), ProgramIn("/jre") + " " + GetParam().rest);
}

const LineRow LineRows[] = {
    {"MainClassAlone", {}, RX_TEXT("Main"), {}, "Main "},
    {"MainClassAndArguments", {}, RX_TEXT("com.acme.Main"), {"a b", "c"}, "com.acme.Main \"a b\" c "},
    {"AMainClassWithASpaceIsNotQuoted", {}, RX_TEXT("-ea Main"), {}, "-ea Main "},
    {"JarAlone", {Jar("a.jar")}, nullptr, {}, "-jar a.jar "},
    {"JarAndEmptyMainClass", {Jar("My a.jar")}, RX_TEXT(""), {"x"}, "-jar \"My a.jar\" x "},
    {"JarAfterOtherOptions", {Direct("-ea"), Jar("a.jar")}, nullptr, {}, "-ea -jar a.jar "},
    {"JarAndMainClass", {Jar("a.jar")}, RX_TEXT("Main"), {"x"}, "-jar a.jar Main x "},
    {"AClassPathWithoutEntriesLeavesItsSpace", {ClassPath({})}, RX_TEXT("Main"), {}, " Main "},
    {"AnEmptyArgumentLeavesItsSpace", {}, RX_TEXT("Main"), {"", "x"}, "Main  x "},
    {"AnOptionWithASpace", {Property("n", "v w")}, RX_TEXT("Main"), {}, "-Dn=\"v w\" Main "},
};

INSTANTIATE_TEST_SUITE_P(Launches, JavaVmLauncherLineTest, testing::ValuesIn(LineRows),
                         [](const auto& row) { return std::string(row.param.name); });

// --- The launch ---

TEST_F(JavaVmLauncherTest, WithoutMainClassAJarOptionIsNeeded) {
  InstallOne();
  CJavaVmLauncher launcher(RX_TEXT("1.6"));
  m_system.ClearLog();
  const auto expected = Throws<CJavaVmLauncherException>(
      LaunchTag, 159, "Java application cannot be launched because neither main class name nor jar option specified.");
  const CJavaVmOptions classPathOnly = OptionsWith(CClassPathOption());
  const CJavaVmOptions directJar = OptionsWith(CDirectOption(RX_TEXT("-jar a.jar")));
  for (const RX::UniChar* mainClass : {static_cast<const RX::UniChar*>(nullptr), RX_TEXT("")}) {
    EXPECT_EQ(FailureOf([&] { launcher.Launch(CJavaVmOptions(), mainClass, CArgumentList()); }), expected);
    EXPECT_EQ(FailureOf([&] { launcher.Launch(classPathOnly, mainClass, CArgumentList()); }), expected);
    EXPECT_EQ(FailureOf([&] { launcher.Launch(directJar, mainClass, CArgumentList()); }), expected);
  }
  EXPECT_THAT(m_system.Log(), IsEmpty());
}

class CSpecialJarOption : public CJarOption {
 public:
  using CJarOption::CJarOption;
  const mirel::base::CClass* GetClass() const override { return &s_class; }
  mirel::base::CObject* Clone() const override { return new CSpecialJarOption(*this); }

 private:
  static mirel::base::CClass s_class;
};
mirel::base::CClass CSpecialJarOption::s_class("CSpecialJarOption", "torvan::jvmlauncher::options::CJarOption", nullptr,
                                               nullptr, sizeof(CSpecialJarOption), nullptr);

TEST_F(JavaVmLauncherTest, AnOptionDerivedFromTheJarOptionCountsAsOne) {
  InstallOne();
  CJavaVmLauncher launcher(RX_TEXT("1.6"));
  EXPECT_EQ(LineOf(launcher, OptionsWith(CSpecialJarOption(RX_TEXT("a.jar"))), nullptr, CArgumentList()),
            ProgramIn("/jre") + " -jar a.jar ");
}

TEST_F(JavaVmLauncherTest, TheThreadHandleIsClosedAtOnceAndTheProcessHandleWithTheLastReference) {
  InstallOne();
  CJavaVmLauncher launcher(RX_TEXT("1.6"));
  m_system.AddProcess();
  m_system.ClearLog();
  CRef<CJavaVmProcess> process = launcher.Launch(CJavaVmOptions(), RX_TEXT("Main"), CArgumentList());
  EXPECT_THAT(m_system.Log(),
              ElementsAre("StartProcess(" + ProgramIn("/jre") + " Main , false, 0)", "ReleaseHandle(thread 1001)"));
  EXPECT_THAT(m_system.OpenHandles(), ElementsAre("process 1001"));
  m_system.ClearLog();
  CRef<CJavaVmProcess> copy = process;
  process = nullptr;
  EXPECT_THAT(m_system.Log(), IsEmpty());
  copy = nullptr;
  EXPECT_THAT(m_system.Log(), ElementsAre("ReleaseHandle(process 1001)"));
  EXPECT_THAT(m_system.OpenHandles(), IsEmpty());
}

TEST_F(JavaVmLauncherTest, AThreadHandleThatIsNotThereIsNotClosed) {
  InstallOne();
  CJavaVmLauncher launcher(RX_TEXT("1.6"));
  FakeProcess script;
  script.hasThreadHandle = false;
  m_system.AddProcess(script);
  m_system.ClearLog();
  launcher.Launch(CJavaVmOptions(), RX_TEXT("Main"), CArgumentList());
  EXPECT_THAT(m_system.Log(),
              ElementsAre("StartProcess(" + ProgramIn("/jre") + " Main , false, 0)", "ReleaseHandle(process 1001)"));
}

TEST_F(JavaVmLauncherTest, AFailedLaunchClosesNothingAndLeavesTheLauncherUsable) {
  InstallOne();
  CJavaVmLauncher launcher(RX_TEXT("1.6"));
  m_system.ClearLog();
  EXPECT_EQ(FailureOf([&] { launcher.Launch(CJavaVmOptions(), RX_TEXT("Main"), CArgumentList()); }),
            Throws<CJavaVmLauncherException>(
                LaunchTag, 186, "Failed to launch the required Java Vm with the specified vm options and arguments."));
  EXPECT_THAT(m_system.Log(), ElementsAre("StartProcess(" + ProgramIn("/jre") + " Main , false, 0)"));
  EXPECT_EQ(LineOf(launcher, CJavaVmOptions(), RX_TEXT("Again"), CArgumentList()), ProgramIn("/jre") + " Again ");
}

TEST_F(JavaVmLauncherTest, EachLaunchStartsAProcessOfTheSameRuntimeAndAsksTheRegistryNoMore) {
  InstallOne();
  CRef<CJavaVmProcess> first;
  CRef<CJavaVmProcess> second;
  {
    CJavaVmLauncher launcher(RX_TEXT("1.6"));
    m_system.AddProcess();
    m_system.AddProcess();
    m_system.ClearLog();
    first = launcher.Launch(CJavaVmOptions(), RX_TEXT("A"), CArgumentList());
    second = launcher.Launch(CJavaVmOptions(), RX_TEXT("B"), CArgumentList());
  }
  EXPECT_THAT(m_system.Log(),
              ElementsAre("StartProcess(" + ProgramIn("/jre") + " A , false, 0)", "ReleaseHandle(thread 1001)",
                          "StartProcess(" + ProgramIn("/jre") + " B , false, 0)", "ReleaseHandle(thread 1002)"));
  // The processes do not need the launcher.
  EXPECT_THAT(m_system.OpenHandles(), ElementsAre("process 1001", "process 1002"));
  second->Wait();
  EXPECT_EQ(second->GetExitCode(), 0);
}

TEST_F(JavaVmLauncherTest, ManyLaunchesLeaveNoHandle) {
  InstallOne();
  CJavaVmLauncher launcher(RX_TEXT("1.6"));
  for (int i = 0; i < 100; ++i) LineOf(launcher, CJavaVmOptions(), RX_TEXT("Main"), CArgumentList());
  EXPECT_THAT(m_system.OpenHandles(), IsEmpty());
}

// --- Memory ---

template <typename Operation>
void IgnoringMemoryFailures(Operation&& operation) {
  try {
    operation();
  } catch (const mirel::base::CMemoryException&) {
  } catch (const RX::OutOfMemoryException&) {
  }
}

TEST_F(JavaVmLauncherTest, ALaunchThatRunsOutOfMemoryHasStartedNothing) {
  InstallOne();
  CJavaVmLauncher launcher(RX_TEXT("1.6"));
  const CJavaVmOptions options = OptionsWith(CJarOption(RX_TEXT("a jar whose path makes the line outgrow its room")));
  CArgumentList arguments;
  arguments.Append(RX_TEXT("an argument"));
  m_system.AddProcess();
  m_system.ClearLog();
  bool started = false;
  const int failures = FailEachAllocation(
      [&] {
        IgnoringMemoryFailures([&] {
          const auto process = launcher.Launch(options, nullptr, arguments);
          started = true;
        });
      },
      [&](int, const Allocations& allocations) {
        EXPECT_THAT(m_system.Log(), IsEmpty());
        EXPECT_EQ(allocations.Live(), 0u);
      });
  EXPECT_TRUE(started);
  EXPECT_GE(failures, 8);
  EXPECT_THAT(m_system.OpenHandles(), IsEmpty());
}

TEST_F(JavaVmLauncherTest, TheCommandLineStartsWithRoomFor32Units) {
  InstallOne();
  CJavaVmLauncher launcher(RX_TEXT("1.6"));
  m_system.AddProcess();
  const CJavaVmOptions options;
  const CArgumentList arguments;
  EXPECT_EQ(FirstRoomOf([&] { launcher.Launch(options, RX_TEXT("Main"), arguments); }), RoomForUnits(32));
}

// The only text of this size: the names of the keys are longer, the paths of the runtime shorter.
TEST_F(JavaVmLauncherTest, TheProgramStartsWithRoomFor32Units) {
  InstallOne();
  const std::size_t room = RoomForUnits(32);
  const Allocations allocations;
  const CJavaVmLauncher launcher(RX_TEXT("1.6"));
  const auto isOfThatSize = [room](const Allocations::Block& block) { return block.size == room; };
  EXPECT_EQ(std::count_if(allocations.Taken().begin(), allocations.Taken().end(), isOfThatSize), 1);
}

TEST_F(JavaVmLauncherTest, AConstructionThatRunsOutOfMemoryLeavesNothingOpen) {
  Install(m_system, Source64, "1.6.0", "/a jre");
  bool constructed = false;
  FailEachAllocation(
      [&] {
        IgnoringMemoryFailures([&] {
          const CJavaVmLauncher launcher(RX_TEXT("1.6"));
          constructed = true;
        });
      },
      [&](int, const Allocations& allocations) {
        EXPECT_THAT(m_system.OpenKeys(), IsEmpty());
        EXPECT_EQ(allocations.Live(), 0u);
      });
  EXPECT_TRUE(constructed);
}

}  // namespace
}  // namespace tests
