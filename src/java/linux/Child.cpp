#include "java/processes/Child.h"

#include <poll.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/vfs.h>
#include <sys/wait.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <string>

#include "java/linux/Descriptor.h"
#include "java/linux/Spawn.h"
#include "java/linux/Tree.h"
#include "java/processes/Streams.h"
#include "java/processes/Surroundings.h"

namespace torvan::java::detail {

namespace {

constexpr std::size_t ReadSize = std::size_t{64} * 1024;

[[noreturn]] void Fail(unsigned int line, const StartPlan& plan, const std::string& step, const std::string& reason) {
  throw StartFailure("java/linux/Child", line, CannotStart(plan, step, reason));
}

[[noreturn]] void Fail(unsigned int line, const StartPlan& plan, const std::string& step) {
  Fail(line, plan, step, ReasonOf(static_cast<unsigned long>(errno)));
}

// Reports a failure after the program was started.
[[noreturn]] void Fail(unsigned int line, const std::string& step, pid_t id) {
  const std::string reason = ReasonOf(static_cast<unsigned long>(errno));
  throw Failure("java/linux/Child", line, "Could not " + step + " of process " + std::to_string(id) + ": " + reason);
}

struct System {
  using Handle = Descriptor;
  using Pipe = detail::Pipe<Descriptor>;

  static constexpr const char* Nothing = "/dev/null";

  static Descriptor Open(const StartPlan& plan, const std::filesystem::path& file, bool isInput) {
    // Output is always added at the end, so that two streams may go to one file.
    const int access = isInput ? O_RDONLY : O_WRONLY | O_CREAT | O_TRUNC | O_APPEND;
    // Opening a named pipe would wait for its other end, however long that takes.
    const bool isNamedPipe = IsNamedPipe(file);
    const std::string step = "open the " + std::string(isInput ? "input" : "output") + " file \"" + ToText(file) + "\"";
    Descriptor descriptor(open(file.c_str(), O_CLOEXEC | O_NOCTTY | access | (isNamedPipe ? O_NONBLOCK : 0),
                               S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH));
    const bool lacksReader = !descriptor && isNamedPipe && errno == ENXIO;
    if (lacksReader) Fail(__LINE__, plan, step, "no program reads this named pipe yet");
    if (!descriptor || !descriptor.MoveAboveStandard()) Fail(__LINE__, plan, step);
    if (!isNamedPipe) return descriptor;
    const bool lacksWriter = isInput && !HasWriter(plan, step, descriptor);
    if (lacksWriter) Fail(__LINE__, plan, step, "no program writes to this named pipe yet");
    if (fcntl(descriptor.Number(), F_SETFL, 0) != 0) Fail(__LINE__, plan, step);
    return descriptor;
  }

  // Pipes without a name, such as /dev/fd/3, are opened at once.
  static bool IsNamedPipe(const std::filesystem::path& file) {
    constexpr long PipesWithoutName = 0x50495045;  // PIPEFS_MAGIC, which some C libraries lack
    struct stat status;
    struct statfs system;
    return stat(file.c_str(), &status) == 0 && S_ISFIFO(status.st_mode) && statfs(file.c_str(), &system) == 0 &&
           static_cast<long>(system.f_type) != PipesWithoutName;
  }

  // A program would take a pipe that has neither a writer nor anything in it for one that is at its end. A writer that
  // waits in its own open() is one. What is in the pipe stays there. Where the system cannot tell, for want of memory
  // for example, the start fails: a program that silently read nothing would be worse.
  static bool HasWriter(const StartPlan& plan, const std::string& step, const Descriptor& namedPipe) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) Fail(__LINE__, plan, step);
    const Descriptor out(ends[0]);
    const Descriptor in(ends[1]);
    ssize_t size;
    do {
      size = tee(namedPipe.Number(), in.Number(), 1, SPLICE_F_NONBLOCK);
    } while (size < 0 && errno == EINTR);
    if (size < 0 && errno != EAGAIN) Fail(__LINE__, plan, step);
    return size != 0;
  }

  // A program whose standard output is closed would print into the first file that it opens.
  static Descriptor Inherited(const StartPlan& plan, int number) {
    Descriptor descriptor(fcntl(number, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    if (!descriptor && errno == EBADF) return Open(plan, Nothing, false);
    if (!descriptor) Fail(__LINE__, plan, "pass on descriptor " + std::to_string(number));
    return descriptor;
  }

  static Pipe MakePipe(const StartPlan& plan, bool isInput) { return isInput ? MakeInput(plan) : MakeOutput(plan); }

  // The input is a pair of sockets and no pipe: it ends by shutdown() for everyone, so that copies which a host's forks
  // hold do not keep it open, and a write after the reader has closed raises no SIGPIPE.
  static Pipe MakeInput(const StartPlan& plan) {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) Fail(__LINE__, plan, "make an input");
    Pipe pipe{Descriptor(ends[0]), Descriptor(ends[1])};
    if (!pipe.ours.MoveAboveStandard() || !pipe.childs.MoveAboveStandard()) Fail(__LINE__, plan, "make an input");
    shutdown(pipe.ours.Number(), SHUT_RD);
    return pipe;
  }

  static Pipe MakeOutput(const StartPlan& plan) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) Fail(__LINE__, plan, "make a pipe");
    Pipe pipe{Descriptor(ends[0]), Descriptor(ends[1])};
    if (!pipe.ours.MoveAboveStandard() || !pipe.childs.MoveAboveStandard() ||
        fcntl(pipe.ours.Number(), F_SETFL, O_NONBLOCK) != 0) {
      Fail(__LINE__, plan, "make a pipe");
    }
    return pipe;
  }
};

}  // namespace

struct Child::Parts {
  Descriptor ours[StreamCount];
  Descriptor wake;
  Spawned spawned;
  bool isReaped = false;
  bool inputIsReady = false;
  char pieces[StreamCount][ReadSize];
};

Child::Child(const StartPlan& plan) : m_parts(new Parts) {
  m_parts->wake = Descriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
  if (!m_parts->wake || !m_parts->wake.MoveAboveStandard()) Fail(__LINE__, plan, "make an event");
  Streams<Descriptor> streams = MakeStreams<System>(plan);
  m_parts->spawned = Spawn(plan, streams.childs, false);
  for (int i = 0; i < StreamCount; ++i) m_parts->ours[i] = std::move(streams.ours[i]);
  if (!m_parts->spawned.process.MoveAboveStandard()) {
    // There is no descriptor of it any more: it is killed by its number, which only this process can free.
    const int error = errno;
    kill(m_parts->spawned.id, SIGKILL);
    while (waitpid(m_parts->spawned.id, nullptr, 0) < 0 && errno == EINTR) {
    }
    m_parts->isReaped = true;
    errno = error;
    Fail(__LINE__, plan, "hold the process");
  }
}

Child::~Child() {
  if (m_parts->isReaped) return;
  KillTree();
  Reap();
}

std::uint32_t Child::Id() const noexcept { return static_cast<std::uint32_t>(m_parts->spawned.id); }

void Child::Wait(bool forInput, Clock::time_point until) {
  pollfd entries[] = {{m_parts->spawned.process.Number(), POLLIN, 0},
                      {m_parts->wake.Number(), POLLIN, 0},
                      {forInput ? m_parts->ours[0].Number() : -1, POLLOUT, 0},
                      {m_parts->ours[1].Number(), POLLIN, 0},
                      {m_parts->ours[2].Number(), POLLIN, 0}};
  int milliseconds = -1;
  if (until != Clock::time_point::max()) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now()).count();
    milliseconds = static_cast<int>(std::clamp<decltype(left)>(left, 0, INT_MAX));
  }
  const int found = poll(entries, std::size(entries), milliseconds);
  const bool isForNow = errno == EINTR || errno == EAGAIN || errno == ENOMEM;  // the caller comes again
  if (found < 0 && !isForNow) Fail(__LINE__, "wait for the end", m_parts->spawned.id);
  if (found <= 0) return;
  m_parts->inputIsReady = entries[2].revents != 0;
  if (entries[1].revents != 0) {
    eventfd_t count;
    eventfd_read(m_parts->wake.Number(), &count);
  }
}

void Child::Wake() noexcept { eventfd_write(m_parts->wake.Number(), 1); }

bool Child::HasEnded() const noexcept {
  pollfd entry{m_parts->spawned.process.Number(), POLLIN, 0};
  return poll(&entry, 1, 0) > 0;
}

std::optional<Exit> Child::Reap() noexcept {
  siginfo_t end{};
  int result;
  do {
    result = waitid(WaitForPidfd, static_cast<id_t>(m_parts->spawned.process.Number()), &end, WEXITED);
  } while (result < 0 && errno == EINTR);
  m_parts->isReaped = true;
  if (result < 0) return std::nullopt;
  return end.si_code == CLD_EXITED ? Exit{end.si_status, false} : Exit{128 + end.si_status, true};
}

const char* Child::WhyLost() noexcept {
  struct sigaction action {};
  sigaction(SIGCHLD, nullptr, &action);
  const bool isIgnored = action.sa_handler == SIG_IGN || (action.sa_flags & SA_NOCLDWAIT) != 0;
  return isIgnored ? "this process ignores SIGCHLD, so the system keeps no exit codes for it"
                   : "other code of this process waits for every child, and has taken it";
}

std::string_view Child::Read(Stream stream) {
  const auto i = static_cast<int>(stream);
  Descriptor& pipe = m_parts->ours[i];
  if (!pipe) return {};
  ssize_t size;
  do {
    size = read(pipe.Number(), m_parts->pieces[i], ReadSize);
  } while (size < 0 && errno == EINTR);
  if (size > 0) return {m_parts->pieces[i], static_cast<std::size_t>(size)};
  if (size < 0 && errno != EAGAIN) Fail(__LINE__, "read the output", m_parts->spawned.id);
  if (size == 0) pipe.Close();
  return {};
}

bool Child::IsInputReady() const noexcept { return m_parts->inputIsReady; }

std::optional<std::size_t> Child::Write(std::string_view text) {
  m_parts->inputIsReady = false;
  const ssize_t size = send(m_parts->ours[0].Number(), text.data(), text.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
  if (size >= 0) return static_cast<std::size_t>(size);
  if (errno == EAGAIN || errno == EINTR || errno == ENOBUFS || errno == ENOMEM) return 0;
  if (errno != EPIPE && errno != ECONNRESET) Fail(__LINE__, "write the input", m_parts->spawned.id);
  return std::nullopt;
}

bool Child::CloseInput() noexcept {
  shutdown(m_parts->ours[0].Number(), SHUT_WR);
  m_parts->ours[0].Close();
  return true;
}

const char* Child::AskToStop() {
  syscall(SYS_pidfd_send_signal, m_parts->spawned.process.Number(), SIGTERM, nullptr, 0);
  return nullptr;
}

void Child::KillTree() noexcept { detail::KillTree(m_parts->spawned.id, m_parts->spawned.process.Number()); }

std::uint32_t StartApart(const StartPlan& plan) {
  const Streams<Descriptor> streams = MakeStreams<System>(plan);
  return static_cast<std::uint32_t>(Spawn(plan, streams.childs, true).id);
}

}  // namespace torvan::java::detail
