// The states of a started process.

#include <gmock/gmock.h>
#include <mirel/base/IllegalArgumentException.h>
#include <torvan/jvmlauncher/JavaVmLauncher.h>

#include <cstdint>
#include <cstring>
#include <type_traits>

#include "fakes/Failure.h"
#include "jvmlauncher/Installation.h"
#include "platform/System.h"

namespace tests {

using namespace torvan::jvmlauncher;
using mirel::base::CIllegalArgumentException;
using mirel::base::CRef;
using testing::ElementsAre;
using testing::IsEmpty;
using torvan::platform::SystemScope;

namespace {

Failure NoWaitCalled() { return Throws<CIllegalArgumentException>(LaunchTag, 111, "No Wait called."); }
Failure WaitRefused() {
  return Throws<CIllegalArgumentException>(LaunchTag, 92, "WaitForSignleObjects returned error.");
}

static_assert(sizeof(CJavaVmProcess) == 2 * sizeof(void*), "a table of slots and one pointer");
static_assert(!std::is_final_v<CJavaVmProcess> && std::is_convertible_v<CJavaVmProcessImp*, CJavaVmProcess>,
              "hosts may derive from it, and make it of an implementation by mere assignment");

#if !defined(_MSC_VER)
// A pointer to a virtual member of this ABI holds 1 + the offset of its slot.
template <typename Member>
std::uintptr_t SlotOf(Member member) {
  std::uintptr_t word;
  std::memcpy(&word, &member, sizeof(word));
  return (word - 1) / sizeof(void*);
}

TEST(JavaVmProcessLayoutTest, TheSlotsAreWaitWithTimeWaitKillStop) {
  EXPECT_EQ(SlotOf(static_cast<bool (CJavaVmProcess::*)(unsigned int)>(&CJavaVmProcess::Wait)), 0u);
  EXPECT_EQ(SlotOf(static_cast<void (CJavaVmProcess::*)()>(&CJavaVmProcess::Wait)), 1u);
  EXPECT_EQ(SlotOf(&CJavaVmProcess::Kill), 2u);
  EXPECT_EQ(SlotOf(&CJavaVmProcess::Stop), 3u);
}
#endif

class JavaVmProcessTest : public testing::Test {
 protected:
  CRef<CJavaVmProcess> Launch(const FakeProcess& script) {
    Install(m_system, Source64, "1.6", "/jre");
    m_system.AddProcess(script);
    CRef<CJavaVmProcess> process =
        CJavaVmLauncher(RX_TEXT("1.6")).Launch(CJavaVmOptions(), RX_TEXT("Main"), CArgumentList());
    m_system.ClearLog();
    return process;
  }

  FakeSystem m_system;

 private:
  SystemScope m_scope{m_system};
};

FakeProcess EndingWith(unsigned int exitCode) {
  FakeProcess script;
  script.exitCode = exitCode;
  return script;
}
FakeProcess RunningForever() {
  FakeProcess script;
  script.timeouts = FakeProcess::Never;
  return script;
}

TEST_F(JavaVmProcessTest, AnEndlessWaitRecordsTheExitCode) {
  const auto process = Launch(EndingWith(42));
  process->Wait();
  EXPECT_THAT(m_system.Log(), ElementsAre("WaitFor(process 1001, 4294967295)", "ExitCodeOf(process 1001)"));
  EXPECT_EQ(process->GetExitCode(), 42);
}

TEST_F(JavaVmProcessTest, AWaitWithATimeRecordsTheExitCodeOfAProcessThatHasEnded) {
  const auto process = Launch(EndingWith(7));
  EXPECT_TRUE(process->Wait(1500));
  EXPECT_THAT(m_system.Log(), ElementsAre("WaitFor(process 1001, 1500)", "ExitCodeOf(process 1001)"));
  EXPECT_EQ(process->GetExitCode(), 7);
}

TEST_F(JavaVmProcessTest, TheExitCodeIsNotAskedForAgain) {
  const auto process = Launch(EndingWith(42));
  process->Wait();
  m_system.ClearLog();
  EXPECT_EQ(process->GetExitCode(), 42);
  EXPECT_EQ(process->GetExitCode(), 42);
  EXPECT_THAT(m_system.Log(), IsEmpty());
}

TEST_F(JavaVmProcessTest, AnExitCodeIsAnIntWhateverItsSign) {
  const auto process = Launch(EndingWith(0xC0000005u));
  process->Wait();
  EXPECT_EQ(process->GetExitCode(), -1073741819);
}

TEST_F(JavaVmProcessTest, WithoutAWaitThereIsNoExitCode) {
  const auto process = Launch(EndingWith(42));
  EXPECT_EQ(FailureOf([&] { process->GetExitCode(); }), NoWaitCalled());
  EXPECT_THAT(m_system.Log(), IsEmpty());
}

TEST_F(JavaVmProcessTest, ATimeOutChangesNothing) {
  FakeProcess script = EndingWith(5);
  script.timeouts = 2;
  const auto process = Launch(script);
  EXPECT_FALSE(process->Wait(0));
  EXPECT_THAT(m_system.Log(), ElementsAre("WaitFor(process 1001, 0)"));
  EXPECT_EQ(FailureOf([&] { process->GetExitCode(); }), NoWaitCalled());
  EXPECT_FALSE(process->Wait(10));
  EXPECT_TRUE(process->Wait(10));
  EXPECT_EQ(process->GetExitCode(), 5);
}

struct StatusRow {
  const char* name;
  unsigned int status;
};

class JavaVmProcessStatusTest : public JavaVmProcessTest, public testing::WithParamInterface<StatusRow> {};

TEST_P(JavaVmProcessStatusTest, IsAnErrorOfBothWaits) {
  FakeProcess script;
  script.waitResult = GetParam().status;
  const auto process = Launch(script);
  EXPECT_EQ(FailureOf([&] { process->Wait(10); }), WaitRefused());
  EXPECT_EQ(FailureOf([&] { process->Wait(); }), WaitRefused());
  EXPECT_THAT(m_system.Log(), ElementsAre("WaitFor(process 1001, 10)", "WaitFor(process 1001, 4294967295)"));
  EXPECT_EQ(FailureOf([&] { process->GetExitCode(); }), NoWaitCalled());
}

const StatusRow StatusRows[] = {{"Abandoned", 0x80}, {"Failed", 0xFFFFFFFF}, {"IoCompletion", 0xC0}, {"One", 1}};

INSTANTIATE_TEST_SUITE_P(Waits, JavaVmProcessStatusTest, testing::ValuesIn(StatusRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(JavaVmProcessTest, AnExitCodeThatCannotBeReadIsAnErrorYetCountsAsWaited) {
  FakeProcess script = EndingWith(42);
  script.exitCodeFails = true;
  const auto process = Launch(script);
  const Failure unreadable = Throws<CIllegalArgumentException>(LaunchTag, 97, "GetExitCodeProcess failed.");
  EXPECT_EQ(FailureOf([&] { process->Wait(10); }), unreadable);
  EXPECT_EQ(process->GetExitCode(), 0);
  EXPECT_EQ(FailureOf([&] { process->Wait(); }), unreadable);
}

TEST_F(JavaVmProcessTest, KillEndsWithZeroAndWaitsForNothing) {
  FakeProcess script = RunningForever();
  script.exitCode = 42;
  const auto process = Launch(script);
  process->Kill();
  EXPECT_THAT(m_system.Log(), ElementsAre("EndProcess(process 1001, 0)"));
  EXPECT_EQ(FailureOf([&] { process->GetExitCode(); }), NoWaitCalled());
  process->Wait();
  EXPECT_EQ(process->GetExitCode(), 0);
}

TEST_F(JavaVmProcessTest, KillingAProcessThatHasEndedIsNoError) {
  const auto process = Launch(EndingWith(42));
  process->Wait();
  process->Kill();
  EXPECT_EQ(process->GetExitCode(), 42);
  process->Wait();
  EXPECT_EQ(process->GetExitCode(), 42);
}

TEST_F(JavaVmProcessTest, StopSendsBothEventsAndWaitsForNothing) {
  FakeProcess script = RunningForever();
  script.processId = 77;
  const auto process = Launch(script);
  process->Stop();
  EXPECT_THAT(m_system.Log(), ElementsAre("SendConsoleEvent(0, 77)", "SendConsoleEvent(1, 77)"));
  EXPECT_EQ(FailureOf([&] { process->GetExitCode(); }), NoWaitCalled());
}

TEST_F(JavaVmProcessTest, EventsThatCannotBeSentAreNoError) {
  const auto process = Launch(EndingWith(42));
  process->Wait();
  m_system.ClearLog();
  process->Stop();
  EXPECT_THAT(m_system.Log(), ElementsAre("SendConsoleEvent(0, 1001)", "SendConsoleEvent(1, 1001)"));
  EXPECT_EQ(process->GetExitCode(), 42);
}

TEST_F(JavaVmProcessTest, TheLastReferenceLeavesARunningProcessRunning) {
  { const auto process = Launch(RunningForever()); }
  EXPECT_THAT(m_system.Log(), ElementsAre("ReleaseHandle(process 1001)"));
  EXPECT_THAT(m_system.OpenHandles(), IsEmpty());
}

}  // namespace
}  // namespace tests
