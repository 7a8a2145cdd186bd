#include "java/processes/Child.h"

#include <algorithm>
#include <atomic>
#include <string>

#include "java/processes/Streams.h"
#include "java/processes/Surroundings.h"
#include "java/win32/Console.h"
#include "java/win32/Pipe.h"
#include "java/win32/Spawn.h"

namespace torvan::java::detail {

namespace {

// The codes of unhandled exceptions: errors (0xC...) of the system, and what Visual Studio throws for every exception
// of C++. What a program chooses itself, such as -1, is not among them.
bool IsException(DWORD code) {
  constexpr DWORD ThrownByCpp = 0xE06D7363;
  return code >> 28 == 0xC || code == ThrownByCpp;
}

[[noreturn]] void Fail(unsigned int line, const StartPlan& plan, const std::string& step) {
  const std::string reason = ReasonOf(GetLastError());
  throw StartFailure("java/win32/Child", line, CannotStart(plan, step, reason));
}

// Reports a failure after the program was started.
[[noreturn]] void Fail(unsigned int line, const std::string& step, DWORD id, DWORD error) {
  const std::string what = step + " of process " + std::to_string(id);
  throw Failure("java/win32/Child", line, "Could not " + what + ": " + ReasonOf(error));
}

struct System {
  using Handle = WindowsHandle;

  static constexpr const wchar_t* Nothing = L"NUL";

  static WindowsHandle Open(const StartPlan& plan, const std::filesystem::path& file, bool isInput) {
    const bool isThere = isInput || file == Nothing;
    // Output is always added at the end, so that two streams may go to one file.
    constexpr DWORD Append = FILE_GENERIC_WRITE & ~static_cast<DWORD>(FILE_WRITE_DATA);
    WindowsHandle handle(CreateFileW(file.native().c_str(), isInput ? GENERIC_READ : Append,
                                     FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                     isThere ? OPEN_EXISTING : CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!handle) {
      Fail(__LINE__, plan, "open the " + std::string(isInput ? "input" : "output") + " file \"" + ToText(file) + "\"");
    }
    return handle;
  }

  static WindowsHandle Inherited(const StartPlan& plan, int stream) {
    const HANDLE own = GetStdHandle(stream == 1 ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
    if (own == nullptr || own == INVALID_HANDLE_VALUE) return Open(plan, Nothing, false);  // a windowed host
    HANDLE copy = nullptr;
    const BOOL isDone =
        DuplicateHandle(GetCurrentProcess(), own, GetCurrentProcess(), &copy, 0, FALSE, DUPLICATE_SAME_ACCESS);
    if (isDone == FALSE) Fail(__LINE__, plan, "pass on an output");
    return WindowsHandle(copy);
  }

  // A named pipe, because others have no overlapped transfers. The name is new and has one instance, so that no other
  // process can connect.
  static Pipe<WindowsHandle> MakePipe(const StartPlan& plan, bool isInput) {
    static std::atomic<unsigned long> s_count = 0;
    const std::wstring name = ToNative("\\\\.\\pipe\\java-program-" + std::to_string(GetCurrentProcessId()) + "-" +
                                       std::to_string(GetTickCount64()) + "-" + std::to_string(++s_count));
    constexpr DWORD Size = 64 * 1024;
    const DWORD direction = isInput ? PIPE_ACCESS_OUTBOUND : PIPE_ACCESS_INBOUND;
    Pipe<WindowsHandle> pipe;
    pipe.ours = WindowsHandle(
        CreateNamedPipeW(name.c_str(), direction | FILE_FLAG_OVERLAPPED | FILE_FLAG_FIRST_PIPE_INSTANCE,
                         PIPE_TYPE_BYTE | PIPE_WAIT | PIPE_REJECT_REMOTE_CLIENTS, 1, Size, Size, 0, nullptr));
    if (!pipe.ours) Fail(__LINE__, plan, "make a pipe");
    pipe.childs = WindowsHandle(
        CreateFileW(name.c_str(), isInput ? GENERIC_READ : GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    if (!pipe.childs) Fail(__LINE__, plan, "make a pipe");
    return pipe;
  }
};

// The processes in it are killed when it is closed, also by the end of this process.
WindowsHandle MakeJob(const StartPlan& plan) {
  WindowsHandle job(CreateJobObjectW(nullptr, nullptr));
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  if (!job || SetInformationJobObject(job.Get(), JobObjectExtendedLimitInformation, &limits, sizeof limits) == FALSE) {
    Fail(__LINE__, plan, "make a job");
  }
  return job;
}

WindowsHandle MakeEvent(const StartPlan& plan) {
  WindowsHandle event(CreateEventW(nullptr, FALSE, FALSE, nullptr));
  if (!event) Fail(__LINE__, plan, "make an event");
  return event;
}

}  // namespace

struct Child::Parts {
  Parts(const StartPlan& plan, Streams<WindowsHandle> streams)
      : job(MakeJob(plan)),
        wake(MakeEvent(plan)),
        input(std::move(streams.ours[0])),
        outputs{ReadingEnd(std::move(streams.ours[1])), ReadingEnd(std::move(streams.ours[2]))} {
    spawned = Spawn(plan, streams.childs, job.Get());
  }

  WindowsHandle job;
  WindowsHandle wake;
  WritingEnd input;
  ReadingEnd outputs[2];
  Spawned spawned;
  bool isReaped = false;
};

Child::Child(const StartPlan& plan) : m_parts(new Parts(plan, MakeStreams<System>(plan))) {}

Child::~Child() {
  if (m_parts->isReaped) return;
  KillTree();
  WaitForSingleObject(m_parts->spawned.process.Get(), INFINITE);
}

std::uint32_t Child::Id() const noexcept { return m_parts->spawned.id; }

void Child::Wait(bool forInput, Clock::time_point until) {
  HANDLE handles[5] = {m_parts->spawned.process.Get(), m_parts->wake.Get()};
  DWORD count = 2;
  for (ReadingEnd& output : m_parts->outputs) {
    if (output.Start()) handles[count++] = output.Event();
  }
  DWORD milliseconds = INFINITE;
  if (until != Clock::time_point::max()) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now()).count();
    milliseconds = static_cast<DWORD>(std::clamp<decltype(left)>(left, 0, INFINITE - 1));
  }
  // The system says only at the end of a write that it has failed. So the end is waited for without more to write, too.
  WritingEnd& input = m_parts->input;
  if (!input.IsReady()) {
    handles[count++] = input.Event();
  } else if (forInput) {
    milliseconds = 0;
  }
  if (WaitForMultipleObjects(count, handles, FALSE, milliseconds) == WAIT_FAILED) {
    Fail(__LINE__, "wait for the end", m_parts->spawned.id, GetLastError());
  }
  input.Settle();
  if (input.Error() != ERROR_SUCCESS) Fail(__LINE__, "write the input", m_parts->spawned.id, input.Error());
}

void Child::Wake() noexcept { SetEvent(m_parts->wake.Get()); }

bool Child::HasEnded() const noexcept {
  return WaitForSingleObject(m_parts->spawned.process.Get(), 0) == WAIT_OBJECT_0;
}

std::optional<Exit> Child::Reap() noexcept {
  DWORD code = 0;
  const bool isKnown = GetExitCodeProcess(m_parts->spawned.process.Get(), &code) != FALSE;
  m_parts->isReaped = true;
  // What the program has left running runs on, as on Linux.
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION none{};
  SetInformationJobObject(m_parts->job.Get(), JobObjectExtendedLimitInformation, &none, sizeof none);
  if (!isKnown) return std::nullopt;
  return Exit{static_cast<int>(code), IsException(code)};
}

const char* Child::WhyLost() noexcept { return "the system does not know it"; }

std::string_view Child::Read(Stream stream) {
  ReadingEnd& output = m_parts->outputs[stream == Stream::Output ? 0 : 1];
  const std::string_view piece = output.Take();
  if (output.Error() != ERROR_SUCCESS) Fail(__LINE__, "read the output", m_parts->spawned.id, output.Error());
  return piece;
}

bool Child::IsInputReady() const noexcept { return m_parts->input.IsReady(); }

std::optional<std::size_t> Child::Write(std::string_view text) {
  const std::optional<std::size_t> taken = m_parts->input.Write(text);
  const DWORD error = m_parts->input.Error();
  if (error != ERROR_SUCCESS) Fail(__LINE__, "write the input", m_parts->spawned.id, error);
  return taken;
}

bool Child::CloseInput() noexcept {
  if (!m_parts->input.IsReady()) return false;
  m_parts->input.Close();
  return true;
}

const char* Child::AskToStop() {
  if (m_parts->spawned.hasOwnConsole) return SendControlC(m_parts->spawned.id);
  return "The program cannot be asked to stop: it shares the console of this process. Kill() ends it";
}

void Child::KillTree() noexcept { TerminateJobObject(m_parts->job.Get(), CodeOfKilled); }

std::uint32_t StartApart(const StartPlan& plan) { return Spawn(plan, MakeStreams<System>(plan).childs, nullptr).id; }

}  // namespace torvan::java::detail
