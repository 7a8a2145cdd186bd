#include "java/processes/Running.h"

#include <torvan/java/Failure.h>

#include <algorithm>
#include <utility>

#include "java/processes/Surroundings.h"

namespace torvan::java::detail {

namespace {

constexpr std::chrono::milliseconds GraceOfTimeLimit = std::chrono::seconds(2);

// How long the function for input is left alone after it has returned an empty text.
constexpr std::chrono::milliseconds PauseOfInput{10};

// More than a pipe holds. What others go on writing into it is not waited for.
constexpr std::size_t MostInPipes = 1 << 20;

}  // namespace

Clock::time_point After(std::chrono::milliseconds time) {
  const Clock::time_point now = Clock::now();
  if (time.count() <= 0) return now;
  const auto most = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::time_point::max() - now);
  return time < most ? now + time : Clock::time_point::max();
}

Running::Running(const ProgramSettings& settings)
    : m_settings(settings),
      m_owner(OwnProcessId()),
      m_outputs{{Stream::Output, m_settings.output, m_outcome.output, {}},
                {Stream::Error, m_settings.error, m_outcome.error, {}}},
      m_feed(m_settings.input),
      m_inputIsOpen(m_settings.keepInputOpen || (m_settings.input.kind != InputSettings::Kind::Nothing &&
                                                 m_settings.input.kind != InputSettings::Kind::File)),
      m_inputIsToEnd(!m_settings.keepInputOpen),
      m_isWritable(m_settings.keepInputOpen),
      m_launched(Launch(m_settings)),
      m_id(TheChild().Id()) {
  if (m_settings.timeLimit) m_stopAt = After(*m_settings.timeLimit);
}

Running::~Running() = default;

bool Running::IsOwn() const noexcept { return m_owner == OwnProcessId(); }

void Running::Serve() noexcept {
  m_server = std::this_thread::get_id();
  std::exception_ptr failure;
  try {
    while (!TheChild().HasEnded()) ServeOnce();
    Finish();
  } catch (...) {
    failure = std::current_exception();
  }
  Launched launched;
  {
    const std::lock_guard<std::mutex> lock(m_mutex);
    std::swap(launched, m_launched);
  }
  launched = {};  // before the end is reported; a program that still runs has to be killed and waited for
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_failure = std::move(failure);
  m_isOver = true;
  m_changed.notify_all();
}

void Running::ServeOnThread() {
  m_thread = StartQuietThread([self = shared_from_this()] { self->Serve(); });
}

void Running::Abandon() noexcept {
  const bool isHere = IsServedHere();
  m_isAbandoned = true;
  {
    const std::lock_guard<std::mutex> lock(m_mutex);
    KillTree();
  }
  isHere ? m_thread.detach() : m_thread.join();  // a thread that is detached ends after this function of the program
}

// What other threads ask for

void Running::Wake() noexcept {
  if (m_launched.child) TheChild().Wake();
}

bool Running::Write(std::string_view text) {
  std::unique_lock<std::mutex> lock(m_mutex);
  if (!m_settings.keepInputOpen) {
    throw Misuse("java/processes/Running", __LINE__, "the input was not kept open: KeepInputOpen() does that");
  }
  if (!m_isWritable) throw Misuse("java/processes/Running", __LINE__, "the input was ended by CloseInput()");
  if (m_isOver || m_inputIsGone) return false;
  m_orders.input.append(text);
  Wake();
  const std::size_t end = m_written += text.size();
  if (IsServedHere()) return true;
  m_changed.wait(lock, [this, end] { return m_isOver || m_inputIsGone || m_taken >= end; });
  return m_taken >= end;
}

void Running::CloseInput() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_isWritable = false;
  m_orders.closeInput = true;
  Wake();
}

bool Running::WaitUntil(Clock::time_point time) const {
  if (IsServedHere()) {
    throw Misuse("java/processes/Running", __LINE__, "a function of the program cannot wait for the program's end");
  }
  std::unique_lock<std::mutex> lock(m_mutex);
  return WaitUntil(time, lock);
}

bool Running::WaitUntil(Clock::time_point time, std::unique_lock<std::mutex>& lock) const {
  const auto isOver = [this] { return m_isOver; };
  if (time != Clock::time_point::max()) return m_changed.wait_until(lock, time, isOver);
  m_changed.wait(lock, isOver);
  return true;
}

void Running::Stop(std::chrono::milliseconds grace) {
  std::unique_lock<std::mutex> lock(m_mutex);
  if (const char* const cannot = AskToStop(Ended::Stopped); cannot != nullptr) {
    throw Failure("java/processes/Running", __LINE__, cannot);
  }
  if (IsServedHere()) {
    m_killAt = std::min(m_killAt, After(grace));
  } else if (!WaitUntil(After(grace), lock)) {
    KillTree();
    WaitUntil(Clock::time_point::max(), lock);
  }
}

void Running::Kill() {
  std::unique_lock<std::mutex> lock(m_mutex);
  KillTree();
  if (!IsServedHere()) WaitUntil(Clock::time_point::max(), lock);
}

// The two for all threads. They work while a function of the program keeps the serving thread busy.

const char* Running::AskToStop(Ended cause) {
  if (!IsRunning()) return nullptr;
  const char* const cannot = TheChild().AskToStop();
  if (cannot == nullptr && !m_cause) m_cause = cause;
  return IsRunning() ? cannot : nullptr;  // it may have ended while it was asked
}

void Running::KillTree() noexcept {
  if (m_isReaped || !m_launched.child) return;
  m_isKilled |= IsRunning();
  TheChild().KillTree();
}

bool Running::IsRunning() const noexcept { return !m_isReaped && m_launched.child && !TheChild().HasEnded(); }

Outcome& Running::Result() {
  if (m_failure) std::rethrow_exception(m_failure);
  return m_outcome;
}

// The loop

void Running::ServeOnce() {
  TakeOrders();
  const Clock::time_point until = KeepTime();
  const bool forInput = FeedInput();
  TheChild().Wait(forInput, std::min(until, m_askAt.value_or(Clock::time_point::max())));
  for (Output& output : m_outputs) {
    std::size_t budget = 1;
    Forward(output, budget);
  }
}

void Running::TakeOrders() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  if (m_inputIsOpen) m_feed.Append(m_orders.input);
  m_inputIsToEnd |= m_orders.closeInput;
  m_orders = {};
}

// Returns when there is something to do for it again.
Clock::time_point Running::KeepTime() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  const Clock::time_point now = Clock::now();
  if (now >= m_stopAt) {
    m_stopAt = Clock::time_point::max();
    m_killAt = std::min(m_killAt, AskToStop(Ended::TimedOut) == nullptr ? After(GraceOfTimeLimit) : now);
  }
  if (now >= m_killAt) {
    m_stopAt = m_killAt = Clock::time_point::max();
    // The time limit ends a program that cannot be asked to stop, too.
    if (!m_cause && !m_isKilled && IsRunning()) m_cause = Ended::TimedOut;
    KillTree();
  }
  return std::min(m_stopAt, m_killAt);
}

// Writes input that the child can take now. Returns whether to wait until it can take more.
bool Running::FeedInput() {
  if (!m_inputIsOpen) return false;
  if (m_isAbandoned) {
    m_feed.Drop();
    m_askAt.reset();  // or every wait would be over at once
  }
  Child& child = TheChild();
  if (m_feed.HasMore()) {
    if (m_askAt && Clock::now() < *m_askAt) return false;
    m_askAt.reset();
    if (!child.IsInputReady()) return true;
    if (const std::string_view piece = m_feed.Next(); !piece.empty()) {
      const std::optional<std::size_t> taken = child.Write(piece);
      if (taken) {
        m_feed.Take(*taken);
      } else {
        m_feed.Drop();
        m_inputIsToEnd = true;
      }
      TellInput(!taken);
      return true;
    }
    if (m_feed.HasMore()) {
      m_askAt = After(PauseOfInput);
      return false;
    }
  }
  if (!m_inputIsToEnd) return false;
  m_inputIsOpen = !child.CloseInput();
  return m_inputIsOpen;
}

void Running::TellInput(bool isGone) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_taken = m_feed.Taken();
  m_inputIsGone |= isGone;
  m_changed.notify_all();
}

void Running::Finish() {
  for (Output& output : m_outputs) {
    std::size_t budget = MostInPipes;
    while (Forward(output, budget)) {
    }
    if (output.settings.kind == OutputSettings::Kind::Lines) output.lines.Finish(FunctionOf(output));
  }
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_isReaped = true;
  const std::optional<Exit> exit = TheChild().Reap();
  if (!exit) {
    throw Failure("java/processes/Running", __LINE__,
                  "The exit code of process " + std::to_string(m_id) + " is lost: " + Child::WhyLost());
  }
  m_outcome.exitCode = exit->code;
  m_outcome.ended = EndedBy(*exit);
}

// Returns how the program ended. A kill counts only when the program ended by it, and not by itself at the same moment.
Ended Running::EndedBy(const Exit& exit) const noexcept {
  const bool byKill = m_isKilled && exit.code == CodeOfKilled;
  if (m_cause == Ended::TimedOut) return Ended::TimedOut;
  if (byKill) return Ended::Killed;
  return m_cause.value_or(exit.bySignal ? Ended::Signalled : Ended::Exited);
}

// Passes on the output that has come so far, and subtracts its size from the budget. Returns whether there may be more
// within the budget.
bool Running::Forward(Output& output, std::size_t& budget) {
  const std::string_view piece = TheChild().Read(output.stream);
  if (output.settings.kind == OutputSettings::Kind::Lines) {
    output.lines.Add(piece, FunctionOf(output));
  } else {
    output.captured.append(piece);
  }
  budget -= std::min(budget, piece.size());
  return !piece.empty() && budget > 0;
}

}  // namespace torvan::java::detail
