// A system that fails, at each of its calls.
#include <process.h>
#include <windows.h>

#include <cerrno>
#include <cstdint>
#include <fstream>
#include <memory>
#include <system_error>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "java/processes/FailingCalls.h"
#include "java/processes/Surroundings.h"

namespace {

// The function of the system that always fails, by the place of its address.
std::atomic<const void*> g_failing = nullptr;
// Whether control events are swallowed, and the handler that this process has set.
std::atomic<bool> g_isDeaf = false;
std::atomic<PHANDLER_ROUTINE> g_handler = nullptr;
// The time that the machine was awake, in units of 100 ns.
std::atomic<ULONGLONG> g_awake = 1;
// The transfer that WriteFile has begun last, and whether such ones fail at their end.
std::atomic<const OVERLAPPED*> g_written = nullptr;
std::atomic<bool> g_isLost = false;
// How the programs were created, in order.
std::vector<DWORD> g_creations;

bool Fails(const void* function) {
  if (g_failing != function && !tests::IsToFail()) return false;
  SetLastError(static_cast<DWORD>(tests::g_error));
  return true;
}

// A function with the same signature, which returns `Failed` where it is to fail, and else calls the system's.
template <class Function>
struct Like;
template <class Result, class... Arguments>
struct Like<Result (*)(Arguments...)> {
  template <auto& Function, std::intptr_t Failed>
  static Result Call(Arguments... arguments) {
    if (!Fails(&Function)) return Function(arguments...);
    if constexpr (std::is_pointer_v<Result>) {
      return reinterpret_cast<Result>(Failed);
    } else {
      return static_cast<Result>(Failed);
    }
  }
};

}  // namespace

// The linker redirects the library's calls here (--wrap): the places where the loader puts the addresses of the
// system's functions are replaced by places with those of ours.
extern "C" {

#define PLACES(name)                          \
  extern decltype(&name) __real___imp_##name; \
  extern decltype(&name) __wrap___imp_##name;
#define WRAPPED(name, failed) \
  PLACES(name)                \
  decltype(&name) __wrap___imp_##name = Like<decltype(&name)>::Call<__real___imp_##name, failed>;

WRAPPED(AttachConsole, FALSE)
WRAPPED(CreateEventW, 0)
WRAPPED(CreateFileW, -1)
WRAPPED(CreateJobObjectW, 0)
WRAPPED(CreateNamedPipeW, -1)
WRAPPED(DuplicateHandle, FALSE)
WRAPPED(GetExitCodeProcess, FALSE)
WRAPPED(GetFullPathNameW, 0)
WRAPPED(GetTempPathW, 0)
WRAPPED(InitializeProcThreadAttributeList, FALSE)
WRAPPED(ReadFile, FALSE)
WRAPPED(SetHandleInformation, FALSE)
WRAPPED(SetInformationJobObject, FALSE)
WRAPPED(UpdateProcThreadAttribute, FALSE)
WRAPPED(WaitForMultipleObjects, WAIT_FAILED)
#if defined(_MSC_VER)
WRAPPED(_beginthreadex, 0)  // what the C++ library makes threads with
#endif

PLACES(CreateProcessW)
decltype(&CreateProcessW) __wrap___imp_CreateProcessW =
    [](const wchar_t* program, wchar_t* line, SECURITY_ATTRIBUTES* ofProcess, SECURITY_ATTRIBUTES* ofThread,
       BOOL inherits, DWORD flags, void* environment, const wchar_t* folder, STARTUPINFOW* start,
       PROCESS_INFORMATION* process) -> BOOL {
  g_creations.push_back(flags);
  return Fails(&__real___imp_CreateProcessW) ? FALSE
                                             : __real___imp_CreateProcessW(program, line, ofProcess, ofThread, inherits,
                                                                           flags, environment, folder, start, process);
};

PLACES(WriteFile)
decltype(&WriteFile) __wrap___imp_WriteFile = [](HANDLE file, const void* bytes, DWORD size, DWORD* written,
                                                 OVERLAPPED* transfer) -> BOOL {
  g_written = transfer;
  return Fails(&__real___imp_WriteFile) ? FALSE : __real___imp_WriteFile(file, bytes, size, written, transfer);
};

// The system always waits for the end of a transfer that it is asked to wait for.
PLACES(GetOverlappedResult)
decltype(&GetOverlappedResult) __wrap___imp_GetOverlappedResult = [](HANDLE file, OVERLAPPED* transfer, DWORD* size,
                                                                     BOOL waits) -> BOOL {
  const bool isLost = g_isLost && transfer == g_written;
  if (isLost) SetLastError(static_cast<DWORD>(tests::g_error));
  const bool fails = waits == FALSE && (isLost || Fails(&__real___imp_GetOverlappedResult));
  return fails ? FALSE : __real___imp_GetOverlappedResult(file, transfer, size, waits);
};

PLACES(GenerateConsoleCtrlEvent)
decltype(&GenerateConsoleCtrlEvent) __wrap___imp_GenerateConsoleCtrlEvent = [](DWORD event, DWORD group) -> BOOL {
  if (Fails(&__real___imp_GenerateConsoleCtrlEvent)) return FALSE;
  return g_isDeaf ? TRUE : __real___imp_GenerateConsoleCtrlEvent(event, group);
};

PLACES(SetConsoleCtrlHandler)
decltype(&SetConsoleCtrlHandler) __wrap___imp_SetConsoleCtrlHandler = [](PHANDLER_ROUTINE handler,
                                                                         BOOL isAdded) -> BOOL {
  if (Fails(&__real___imp_SetConsoleCtrlHandler)) return FALSE;
  if (isAdded != FALSE) g_handler = handler;
  return __real___imp_SetConsoleCtrlHandler(handler, isAdded);
};

PLACES(QueryUnbiasedInterruptTime)
decltype(&QueryUnbiasedInterruptTime) __wrap___imp_QueryUnbiasedInterruptTime = [](ULONGLONG* time) -> BOOL {
  *time = g_awake;
  return TRUE;
};

#undef PLACES
#undef WRAPPED
}

#if !defined(_MSC_VER)
// GNU's C++ library makes the thread in this function; the object comes first.
#define START_THREAD "_ZNSt6thread15_M_start_threadESt10unique_ptrINS_6_StateESt14default_deleteIS1_EEPFvvE"
void RealStart(std::thread* thread, std::unique_ptr<std::thread::_State> state,
               void (*function)()) __asm__("__real_" START_THREAD);
void OurStart(std::thread* thread, std::unique_ptr<std::thread::_State> state,
              void (*function)()) __asm__("__wrap_" START_THREAD);
void OurStart(std::thread* thread, std::unique_ptr<std::thread::_State> state, void (*function)()) {
  if (tests::IsToFail()) throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
  RealStart(thread, std::move(state), function);
}
#undef START_THREAD
#endif

namespace tests {
namespace {

using java::Ended;
using java::Outcome;
using java::Process;

std::string Reason() { return torvan::java::detail::ReasonOf(ERROR_NOT_READY); }
std::string ForTheJava() { return " for \"" + JavaOf(ProbeHome()).u8string() + "\": " + Reason(); }

TEST(RunningFailingSystemTest, ARunFailsWithTheStepThatFailed) {
  const auto texts = FailEach(ERROR_NOT_READY, [] {
    const Outcome outcome = java::Run(Probe({"echo", "says", "!"}).Folder(ProbeHome()).Input("text"));
    // A failed call that is not reported has no effect.
    EXPECT_EQ(outcome.output, "text!");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.ended, Ended::Exited);
  });
  for (const std::string step :
       {"make a job", "make an event", "make a pipe", "list the handles", "hand over the standard streams"}) {
    EXPECT_EQ(texts.count("Could not " + step + ForTheJava()), 1u) << step;
  }
  EXPECT_EQ(texts.count("Could not make an event for a pipe: " + Reason()), 1u);
  EXPECT_EQ(texts.count("Could not run \"" + JavaOf(ProbeHome()).u8string() + "\": " + Reason()), 1u);
}

// How many of these calls come before the end differs from run to run: all of one kind fail.
TEST(RunningFailingSystemTest, ARunThatCannotBeServedSaysWhy) {
  struct Row {
    const void* function;
    const char* text;
  };
  const Row rows[] = {{&__real___imp_ReadFile, "Could not read the output of process "},
                      {&__real___imp_WriteFile, "Could not write the input of process "},
                      {&__real___imp_WaitForMultipleObjects, "Could not wait for the end of process "},
                      {&__real___imp_GetExitCodeProcess, "The exit code of process "}};
  for (const Row& row : rows) {
    g_error = ERROR_NOT_READY;
    g_failing = row.function;
    try {
      java::Run(Probe({"echo"}).Input("text"));
      ADD_FAILURE() << "nothing was thrown: " << row.text;
    } catch (const java::Failure& failure) {
      EXPECT_EQ(std::string(failure.what()).find(row.text), 0u) << failure.what();
    }
    g_failing = nullptr;
  }
}

template <class Function>
void ExpectLostInput(const Function& function) {
  g_error = ERROR_NOT_READY;
  try {
    function();
    ADD_FAILURE() << "nothing was thrown";
  } catch (const java::Failure& failure) {
    EXPECT_EQ(std::string(failure.what()).find("Could not write the input of process "), 0u) << failure.what();
  }
  g_isLost = false;
}

// The system takes a text at once, and says later that it could not write it.
TEST(RunningFailingSystemTest, ALastTextThatIsLostIsReported) {
  g_isLost = true;
  ExpectLostInput([] { java::Run(Probe({"echo"}).Input("text")); });
}

TEST(RunningFailingSystemTest, ATextThatIsLostIsReportedWithoutAnother) {
  const auto goOn = ProbeHome() / "go on";
  Process process = java::Start(Probe({"awaits", goOn.u8string(), "flood", "0"}).KeepInputOpen());
  EXPECT_TRUE(process.Write(std::string(100000, 'x')));  // its end is still on its way: the pipe holds less
  EXPECT_TRUE(process.Write(""));                        // wakes the program's thread, which has nothing more to write
  std::this_thread::sleep_for(100ms);
  g_isLost = true;
  ExpectLostInput([&] {
    std::ofstream(goOn) << "";
    process.Wait(Patience);  // the program reads all, and writes nothing
  });
}

TEST(RunningFailingSystemTest, AProcessFailsWithTheStepThatFailed) {
  const auto texts = FailEach(ERROR_NOT_READY, [] {
    Process process = java::Start(Probe({"echo"}).KeepInputOpen());
    if (process.Write("text")) process.CloseInput();
    EXPECT_EQ(process.Wait().output, "text");
  });
  EXPECT_EQ(CountOf(texts, "Could not start a thread for the program: "), 1u);
}

TEST(RunningFailingSystemTest, AProgramThatIsTooLongLeavesNoFile) {
  const auto folder = ProbeHome() / "temporary";
  std::filesystem::create_directories(folder);
  const auto before = std::filesystem::temp_directory_path();
  UseTemporaryFolder(folder);
  const auto run = [] { EXPECT_EQ(java::Run(Probe({"says", "x", "exit", "0", std::string(40000, 'x')})).output, "x"); };
  const auto texts = FailEach(ERROR_NOT_READY, [&] {
    const auto clean = [&folder] { return std::filesystem::is_empty(folder); };
    try {
      run();
    } catch (const java::Failure&) {
      EXPECT_TRUE(clean());
      throw;
    }
    EXPECT_TRUE(clean());
  });
  EXPECT_EQ(CountOf(texts, "Could not write the argument file \"" + folder.u8string() + "\\java-arguments-"),
            2u);  // made, written
  const void* const functions[] = {&__real___imp_GetTempPathW, &__real___imp_GetFullPathNameW};
  for (const void* function : functions) {
    g_failing = function;
    ExpectThrow<java::StartFailure>(run,
                                    "Could not write the argument file: no folder for temporary files: " + Reason());
  }
  g_failing = nullptr;
  UseTemporaryFolder(before);
}

TEST(RunningFailingSystemTest, ADetachedProgramFailsWithTheStepThatFailed) {
  const auto texts = FailEach(ERROR_NOT_READY, [] {
    const auto id = Probe({"exit", "0"}).InheritError().Detached();
    EXPECT_TRUE(Eventually([id] { return !Runs(id); }));
  });
  EXPECT_EQ(texts.count("Could not open the input file \"NUL\"" + ForTheJava()), 1u);
  EXPECT_EQ(texts.count("Could not open the output file \"NUL\"" + ForTheJava()), 1u);
  EXPECT_EQ(texts.count("Could not pass on an output" + ForTheJava()), 1u);
}

// Nothing else can be asked: the console that a program gets without a window looks the same to it as none.
TEST(RunningFailingSystemTest, AProgramGetsAConsoleWithoutAWindow) {
  constexpr DWORD Always = EXTENDED_STARTUPINFO_PRESENT | CREATE_UNICODE_ENVIRONMENT;
  g_creations.clear();
  java::Run(Probe({"exit", "0"}));
  java::Start(Probe({"exit", "0"})).Wait();
  Probe({"exit", "0"}).Detached();
  EXPECT_EQ(g_creations, (std::vector<DWORD>{Always | CREATE_NO_WINDOW, Always | CREATE_NO_WINDOW,
                                             Always | CREATE_NO_WINDOW | CREATE_BREAKAWAY_FROM_JOB}));
}

TEST(RunningFailingSystemTest, AJobThatNoProgramMayLeaveKeepsADetachedOne) {
  constexpr DWORD Flags = EXTENDED_STARTUPINFO_PRESENT | CREATE_UNICODE_ENVIRONMENT | CREATE_NO_WINDOW;
  g_creations.clear();
  g_error = ERROR_ACCESS_DENIED;
  g_failing = &__real___imp_CreateProcessW;
  ExpectThrow<java::StartFailure>([] { Probe({}).Detached(); },
                                  "Could not run \"" + JavaOf(ProbeHome()).u8string() +
                                      "\": " + torvan::java::detail::ReasonOf(ERROR_ACCESS_DENIED));
  g_failing = nullptr;
  EXPECT_EQ(g_creations, (std::vector<DWORD>{Flags | CREATE_BREAKAWAY_FROM_JOB, Flags}));
}

// Arguments that are too long never come to the system: these errors are about paths.
TEST(RunningFailingSystemTest, APathThatIsTooLongIsNotTakenForArguments) {
  const std::string folder = (ProbeHome() / "empty").u8string();
  const std::string program = JavaOf(ProbeHome()).u8string();
  const auto reason = [](DWORD error) { return torvan::java::detail::ReasonOf(error); };
  const std::pair<DWORD, std::string> rows[] = {
      {ERROR_FILENAME_EXCED_RANGE, "Could not run \"" + program + "\": " + reason(ERROR_FILENAME_EXCED_RANGE)},
      {ERROR_DIRECTORY,
       "Could not change to the folder \"" + folder + "\" for \"" + program + "\": " + reason(ERROR_DIRECTORY)}};
  for (const auto& [error, text] : rows) {
    g_error = static_cast<int>(error);
    g_failing = &__real___imp_CreateProcessW;
    g_creations.clear();
    ExpectThrow<java::StartFailure>([&folder] { java::Run(Probe({}).Folder(folder)); }, text);
    EXPECT_EQ(g_creations.size(), 1u);
  }
  g_failing = nullptr;
}

// Starts a program and waits until it has begun: before that, its console cannot be reached.
Process StartAndWait() {
  const auto begun = std::make_shared<std::atomic<bool>>(false);
  Process process = java::Start(
      Probe({"says", "begun\n", "sleep", Forever}).OnOutputLine([begun](std::string_view) { *begun = true; }));
  EXPECT_TRUE(Eventually([&begun] { return begun->load(); }));
  return process;
}

TEST(RunningFailingSystemTest, AProgramThatCannotBeAskedRunsOn) {
  struct Row {
    const void* function;
    const char* reason;
  };
  const Row rows[] = {{&__real___imp_AttachConsole, "its console cannot be reached"},
                      {&__real___imp_SetConsoleCtrlHandler, "the system refuses Ctrl+C"},
                      {&__real___imp_GenerateConsoleCtrlEvent, "the system refuses Ctrl+C"}};
  g_isDeaf = true;  // an event that is sent nevertheless must not end this process
  for (const Row& row : rows) {
    Process process = StartAndWait();
    g_failing = row.function;
    ExpectThrow<java::Failure>([&] { process.Stop(Patience); },
                               std::string("The program cannot be asked to stop: ") + row.reason + ". Kill() ends it");
    g_failing = nullptr;
    EXPECT_FALSE(process.Wait(0ms)) << row.reason;
    process.Kill();
    EXPECT_EQ(process.Wait().ended, Ended::Killed) << row.reason;
  }
  g_isDeaf = false;
}

// As where this process ignores Ctrl+C: what it has sent never comes back.
TEST(RunningFailingSystemTest, AnEventThatNeverComesIsExpectedForAWhileWhereOthersMayCome) {
  const auto stop = [] { StartAndWait().Stop(0ms); };
  constexpr ULONGLONG Seconds = 10'000'000;
  g_isDeaf = true;
  stop();
  const PHANDLER_ROUTINE handler = g_handler;
  ASSERT_NE(handler, nullptr);
  EXPECT_FALSE(handler(CTRL_BREAK_EVENT));
  EXPECT_TRUE(handler(CTRL_C_EVENT));
  EXPECT_FALSE(handler(CTRL_C_EVENT));
  // Without a console no other can come.
  stop();
  stop();
  g_awake += 1000 * Seconds;
  EXPECT_TRUE(handler(CTRL_C_EVENT));
  EXPECT_TRUE(handler(CTRL_C_EVENT));
  EXPECT_FALSE(handler(CTRL_C_EVENT));
  stop();
  stop();
  FreeConsole();
  ASSERT_TRUE(AllocConsole());
  g_awake += 30 * Seconds;
  EXPECT_TRUE(handler(CTRL_C_EVENT));
  ++g_awake;
  EXPECT_FALSE(handler(CTRL_C_EVENT));
  g_awake -= 1;
  EXPECT_FALSE(handler(CTRL_C_EVENT));  // it is forgotten
  FreeConsole();
  g_isDeaf = false;
}

}  // namespace
}  // namespace tests
