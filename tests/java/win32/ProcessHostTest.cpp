// What belongs to the host stays as it is: its handles, console and jobs.
#include <windows.h>

#include <atomic>

#include "java/processes/Probe.h"
#include "java/processes/ThisProcess.h"

namespace tests {
namespace {

using java::Ended;
using java::Outcome;
using java::Process;

std::atomic<int> g_events = 0;
BOOL WINAPI Count(DWORD) {
  ++g_events;
  return TRUE;
}

TEST(ProcessHostTest, NoOtherHandleReachesTheProgram) {
  SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  std::vector<HANDLE> handles;
  for (int i = 0; i < 50; ++i) handles.push_back(CreateEventW(&inheritable, TRUE, FALSE, nullptr));
  // The last ones have numbers that the program's own handles do not reach.
  const auto number = std::to_string(reinterpret_cast<std::intptr_t>(handles.back()));
  EXPECT_EQ(java::Run(Probe({"handle", number})).output, "not there");
  for (const HANDLE handle : handles) CloseHandle(handle);
}

TEST(ProcessHostTest, AWindowedHostWithoutStandardHandlesRunsPrograms) {
  constexpr DWORD Numbers[] = {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE};
  for (const HANDLE none : {HANDLE{nullptr}, INVALID_HANDLE_VALUE}) {
    HANDLE before[3];
    for (int i = 0; i < 3; ++i) {
      before[i] = GetStdHandle(Numbers[i]);
      SetStdHandle(Numbers[i], none);
    }
    const java::Program program = Probe({"echo", "complains", "e"}).Input("o");
    const Outcome captured = java::Run(program);
    // It can write, to nowhere.
    const Outcome inherited = java::Run(java::Program(program).InheritOutput().InheritError());
    for (int i = 0; i < 3; ++i) SetStdHandle(Numbers[i], before[i]);
    EXPECT_EQ(captured.output, "o");
    EXPECT_EQ(captured.error, "e");
    EXPECT_EQ(inherited.output + inherited.error, "");
    EXPECT_EQ(inherited.exitCode, 0);
  }
}

TEST(ProcessHostTest, TheCodesOfExceptionsTellThatOneEndedTheProgram) {
  struct Row {
    unsigned int code;
    Ended ended;
  };
  const Row rows[] = {{0xBFFFFFFF, Ended::Exited},    {0xC0000000, Ended::Signalled}, {0xC00000FD, Ended::Signalled},
                      {0xCFFFFFFF, Ended::Signalled}, {0xD0000000, Ended::Exited},    {0xE06D7362, Ended::Exited},
                      {0xE06D7363, Ended::Signalled}, {0xE06D7364, Ended::Exited}};
  for (const Row& row : rows) {
    const Outcome outcome = java::Run(Probe({"exit", std::to_string(static_cast<int>(row.code))}));
    EXPECT_EQ(static_cast<unsigned int>(outcome.exitCode), row.code);
    EXPECT_EQ(outcome.ended, row.ended) << row.code;
  }
}

TEST(ProcessHostTest, ItsOwnControlHandlersSeeNothingOfAStop) {
  ASSERT_TRUE(SetConsoleCtrlHandler(Count, TRUE));
  g_events = 0;
  std::atomic<bool> begun = false;
  Process process = java::Start(
      Probe({"orderly", "42", "says", "begun\n", "sleep", Forever}).OnOutputLine([&begun](std::string_view) {
        begun = true;
      }));
  ASSERT_TRUE(Eventually([&] { return begun.load(); }));
  const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
  process.Stop(Patience);
  EXPECT_EQ(GetStdHandle(STD_OUTPUT_HANDLE), output);
  EXPECT_EQ(process.Wait().exitCode, 42);
  EXPECT_EQ(process.Wait().ended, Ended::Stopped);
  EXPECT_EQ(g_events, 0);
  SetConsoleCtrlHandler(Count, FALSE);
}

TEST(ProcessHostTest, AHostWithAConsoleIsToldThatItCannotAsk) {
  FreeConsole();
  ASSERT_TRUE(AllocConsole());
  Process process = java::Start(Probe({"sleep", Forever}));
  ExpectThrow<java::Failure>([&] { process.Stop(1s); },
                             "The program cannot be asked to stop: that takes its console, and this process has a "
                             "console itself. Kill() ends it");
  EXPECT_FALSE(process.Wait(0ms));
  process.Kill();
  EXPECT_EQ(process.Wait().ended, Ended::Killed);
  const Outcome late = java::Run(Probe({"sleep", Forever}).TimeLimit(200ms));
  EXPECT_EQ(late.ended, Ended::TimedOut);
  EXPECT_EQ(late.exitCode, 137);
  FreeConsole();
}

TEST(ProcessHostTest, AHostInAJobRunsPrograms) {
  const HANDLE job = CreateJobObjectW(nullptr, nullptr);
  ASSERT_TRUE(AssignProcessToJobObject(job, GetCurrentProcess()));
  EXPECT_EQ(java::Run(Probe({"exit", "3"})).exitCode, 3);
  Process process = java::Start(Probe({"sleep", Forever}));
  process.Kill();
  EXPECT_EQ(process.Wait().ended, Ended::Killed);
  const std::uint32_t id = Probe({"sleep", "200"}).Detached();
  EXPECT_TRUE(Eventually([id] { return !Runs(id); }));
  CloseHandle(job);
}

TEST(ProcessHostTest, AProgramMayMakeAJobInsideItsOwn) {
  std::atomic<unsigned long> inside = 0;
  std::atomic<bool> isRefused = false;
  Process process = java::Start(Probe({"job", Forever, "sleep", Forever}).OnOutputLine([&](std::string_view line) {
    isRefused = line == "refused";
    if (!isRefused) inside = std::stoul(std::string(line));
  }));
  ASSERT_TRUE(Eventually([&] { return inside != 0 || isRefused; }));
  ASSERT_FALSE(isRefused);
  EXPECT_TRUE(Runs(inside));
  process.Kill();
  EXPECT_TRUE(Eventually([&inside] { return !Runs(inside); }));
}

TEST(ProcessHostTest, AProgramIgnoresControlCIfItsHostDoesAtItsStart) {
  for (const bool isIgnored : {true, false}) {
    std::atomic<bool> begun = false;
    ASSERT_TRUE(SetConsoleCtrlHandler(nullptr, isIgnored));
    Process process = java::Start(
        Probe({"orderly", "42", "says", "begun\n", "sleep", Forever}).OnOutputLine([&begun](std::string_view) {
          begun = true;
        }));
    ASSERT_TRUE(Eventually([&] { return begun.load(); }));
    process.Stop(isIgnored ? 300ms : Patience);
    EXPECT_EQ(process.Wait().ended, isIgnored ? Ended::Killed : Ended::Stopped);
    EXPECT_EQ(process.Wait().exitCode, isIgnored ? 137 : 42);
  }
}

}  // namespace
}  // namespace tests
