#include "java/processes/Running.h"

#include <torvan/java/Failure.h>

#include <algorithm>
#include <utility>

#include "java/processes/Surroundings.h"

namespace torvan::java::detail {

namespace {

constexpr std::chrono::milliseconds GraceOfTimeLimit = std::chrono::seconds(2);

// More than a pipe holds. What others go on writing into it is not waited for.
constexpr std::size_t MostInPipes = 1 << 20;

}  // namespace

Clock::time_point After(std::chrono::milliseconds time) {
  const Clock::time_point now = Clock::now();
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
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_launched = {};  // freed before the end is reported
  m_failure = std::move(failure);
  m_isOver = true;
  m_changed.notify_all();
}

void Running::ServeOnThread() {
  m_thread = StartQuietThread([self = shared_from_this()] { self->Serve(); });
}

void Running::Abandon() noexcept {
  if (IsServedHere()) {
    KillTree();
    m_thread.detach();  // it ends after this function of the program
    return;
  }
  {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_orders.kill = true;
    Wake();
  }
  m_thread.join();
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
  const auto isOver = [this] { return m_isOver; };
  if (time != Clock::time_point::max()) return m_changed.wait_until(lock, time, isOver);
  m_changed.wait(lock, isOver);
  return true;
}

void Running::Stop(std::chrono::milliseconds grace) {
  const char* cannot = nullptr;
  if (IsServedHere()) {
    cannot = AskToStop(Ended::Stopped, grace);
  } else {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_cannotStop = nullptr;
    m_orders.stop = grace;
    Wake();
    m_changed.wait(lock, [this] { return m_isOver || m_cannotStop != nullptr; });
    if (!m_isOver) cannot = m_cannotStop;
  }
  if (cannot != nullptr) throw Failure("java/processes/Running", __LINE__, cannot);
}

void Running::Kill() {
  if (IsServedHere()) return KillTree();
  std::unique_lock<std::mutex> lock(m_mutex);
  m_orders.kill = true;
  Wake();
  m_changed.wait(lock, [this] { return m_isOver; });
}

Outcome& Running::Result() {
  if (m_failure) std::rethrow_exception(m_failure);
  return m_outcome;
}

// The loop

void Running::ServeOnce() {
  Obey([this] {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::exchange(m_orders, {});
  }());
  KeepTime();
  const bool forInput = FeedInput();
  TheChild().Wait(forInput, std::min(m_stopAt, m_killAt));
  for (Output& output : m_outputs) {
    std::size_t budget = 1;
    output.Forward(TheChild(), budget);
  }
}

void Running::Obey(Orders orders) {
  if (m_inputIsOpen) m_feed.Append(orders.input);
  if (orders.closeInput) m_inputIsToEnd = true;
  if (orders.kill) return KillTree();
  if (!orders.stop) return;
  if (const char* const cannot = AskToStop(Ended::Stopped, *orders.stop); cannot != nullptr) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_cannotStop = cannot;
    m_changed.notify_all();
  }
}

void Running::KeepTime() {
  const Clock::time_point now = Clock::now();
  if (now >= m_killAt) return KillTree();
  if (now < m_stopAt) return;
  m_stopAt = Clock::time_point::max();
  if (!m_cause) m_cause = Ended::TimedOut;
  if (AskToStop(*m_cause, GraceOfTimeLimit) != nullptr) KillTree();
}

const char* Running::AskToStop(Ended cause, std::chrono::milliseconds grace) {
  const char* const cannot = TheChild().AskToStop();
  if (cannot != nullptr) return cannot;
  if (!m_cause) m_cause = cause;
  m_killAt = std::min(m_killAt, After(grace));
  return nullptr;
}

void Running::KillTree() noexcept {
  if (m_cause != Ended::TimedOut) m_cause = Ended::Killed;
  m_stopAt = m_killAt = Clock::time_point::max();
  TheChild().KillTree();
}

// Returns whether the child is to be waited for until it takes more.
bool Running::FeedInput() {
  if (!m_inputIsOpen) return false;
  Child& child = TheChild();
  if (m_feed.HasMore()) {
    if (!child.IsInputReady()) return true;
    const std::optional<std::size_t> taken = child.Write(m_feed.Next());
    if (taken) {
      m_feed.Take(*taken);
    } else {
      m_feed.Drop();
      m_inputIsToEnd = true;
    }
    TellInput(!taken);
    return true;
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
    while (output.Forward(TheChild(), budget)) {
    }
    output.Finish();
  }
  const std::optional<Exit> exit = TheChild().Reap();
  if (!exit) {
    throw Failure("java/processes/Running", __LINE__,
                  "The exit code of process " + std::to_string(m_id) + " is lost: " + Child::WhyLost());
  }
  m_outcome.exitCode = exit->code;
  m_outcome.ended = m_cause.value_or(exit->bySignal ? Ended::Signalled : Ended::Exited);
}

// Hands on what there is, once, and takes it off the budget. Returns whether there can be more within the budget.
bool Running::Output::Forward(Child& child, std::size_t& budget) {
  const std::string_view piece = child.Read(stream);
  if (settings.kind == OutputSettings::Kind::Lines) {
    lines.Add(piece, settings.onLine);
  } else {
    captured.append(piece);
  }
  budget -= std::min(budget, piece.size());
  return !piece.empty() && budget > 0;
}

void Running::Output::Finish() {
  if (settings.kind == OutputSettings::Kind::Lines) lines.Finish(settings.onLine);
}

}  // namespace torvan::java::detail
