#include <torvan/java/Process.h>

#include <torvan/java/Failure.h>

#include <utility>

#include "java/processes/Running.h"

namespace torvan::java {

using detail::Clock;
using detail::Running;

namespace {

// Never destroys what it holds.
union KeptRunning {
  std::shared_ptr<Running> running;
  ~KeptRunning() {}
};

// A forked process has the memory of a Running, but neither its thread nor its child.
void LetGo(std::shared_ptr<Running> running) noexcept {
  if (!running) return;
  if (running->IsOwn()) {
    running->Abandon();
  } else {
    const KeptRunning kept{std::move(running)};
  }
}

}  // namespace

Process::Process(std::shared_ptr<Running> running) : m_running(std::move(running)) {}

Process::Process(Process&& other) noexcept = default;

Process& Process::operator=(Process&& other) noexcept {
  if (this != &other) LetGo(std::exchange(m_running, std::move(other.m_running)));
  return *this;
}

Process::~Process() { LetGo(std::move(m_running)); }

Running& Process::Own() const {
  if (!m_running) throw Misuse("java/Process", __LINE__, "the Process was moved from");
  if (!m_running->IsOwn()) {
    throw Misuse("java/Process", __LINE__, "the Process belongs to the process that has started it, not to a fork");
  }
  return *m_running;
}

std::uint32_t Process::Id() const { return Own().Id(); }
bool Process::Write(std::string_view text) { return Own().Write(text); }
void Process::CloseInput() { Own().CloseInput(); }
void Process::Stop(std::chrono::milliseconds grace) { Own().Stop(grace); }
void Process::Kill() { Own().Kill(); }

Outcome Process::Wait() const {
  Running& running = Own();
  running.WaitUntil(Clock::time_point::max());
  return running.Result();
}

std::optional<Outcome> Process::Wait(std::chrono::milliseconds time) const {
  Running& running = Own();
  if (!running.WaitUntil(detail::After(time))) return std::nullopt;
  return running.Result();
}

Outcome Run(const Program& program) {
  const bool isKeptOpen = program.Settings().keepInputOpen;
  if (isKeptOpen) {
    throw Misuse("java/Process", __LINE__, "an input that is kept open needs a Process to write to it: use Start()");
  }
  Running running(program.Settings());
  running.Serve();
  return std::move(running.Result());
}

Process Start(const Program& program) {
  auto running = std::make_shared<Running>(program.Settings());
  running->ServeOnThread();
  return Process(std::move(running));
}

}  // namespace torvan::java
