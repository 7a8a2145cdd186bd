// A program that runs, and the loop that serves it.
#pragma once

#include <torvan/java/Process.h>

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

#include "java/processes/Child.h"
#include "java/processes/InputFeed.h"
#include "java/processes/Launch.h"
#include "java/processes/Lines.h"

namespace torvan::java::detail {

// The moment that long from now, or the last one that the clock has.
Clock::time_point After(std::chrono::milliseconds time);

// Only the thread that serves the program reads and feeds the child; others leave orders and wake it, ask it to stop
// and kill it.
class Running : public std::enable_shared_from_this<Running> {
 public:
  // Starts the program. Throws as Launch does.
  explicit Running(const ProgramSettings& settings);
  ~Running();
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;

  // Serves the program until it has ended, on this thread or on a new one. What goes wrong is kept for Result().
  void Serve() noexcept;
  void ServeOnThread();
  // Kills what still runs and waits for the end of the thread.
  void Abandon() noexcept;

  // As the members of Process.
  std::uint32_t Id() const noexcept { return m_id; }
  bool Write(std::string_view text);
  void CloseInput();
  bool WaitUntil(Clock::time_point time) const;
  void Stop(std::chrono::milliseconds grace);
  void Kill();

  // What became of the program, once it is over. Throws what went wrong.
  Outcome& Result();

  // A process that the host has forked has a copy of this, but neither the thread nor the child.
  bool IsOwn() const noexcept;

 private:
  struct Orders {
    std::string input;
    bool closeInput = false;
  };
  struct Output {
    const Stream stream;
    const OutputSettings& settings;
    std::string& captured;
    Lines lines;
  };

  bool IsServedHere() const noexcept { return m_server.load() == std::this_thread::get_id(); }
  Child& TheChild() const noexcept { return *m_launched.child; }
  void Wake() noexcept;  // under the lock

  // Under the lock.
  const char* AskToStop(Ended cause);
  void KillTree() noexcept;
  bool IsRunning() const noexcept;
  bool WaitUntil(Clock::time_point time, std::unique_lock<std::mutex>& lock) const;

  void ServeOnce();
  void TakeOrders();
  Clock::time_point KeepTime();
  bool FeedInput();
  void TellInput(bool isGone);
  bool Forward(Output& output, std::size_t& budget);
  void Finish();
  Ended EndedBy(const Exit& exit) const noexcept;

  // The function for the lines of an output. Once the Process is dropped it is called no more.
  auto FunctionOf(const Output& output) const {
    return [this, &output](std::string_view line) {
      if (!m_isAbandoned) output.settings.onLine(line);
    };
  }

  const ProgramSettings m_settings;
  const unsigned long m_owner;
  std::atomic<std::thread::id> m_server{};
  std::atomic<bool> m_isAbandoned = false;
  std::thread m_thread;

  // For the serving thread only; the outcome is for all threads once it is over.
  Outcome m_outcome;
  Output m_outputs[2];
  InputFeed m_feed;
  bool m_inputIsOpen;
  bool m_inputIsToEnd;                       // once all of it is written
  std::optional<Clock::time_point> m_askAt;  // the function for input again, after an empty text

  mutable std::mutex m_mutex;
  mutable std::condition_variable m_changed;
  Orders m_orders;
  std::size_t m_written = 0;  // bytes passed to Write(), and how many of them the system has taken
  std::size_t m_taken = 0;
  bool m_isWritable;             // until CloseInput()
  bool m_inputIsGone = false;    // it has no reader any more
  std::optional<Ended> m_cause;  // why it was asked to stop
  bool m_isKilled = false;
  bool m_isReaped = false;
  Clock::time_point m_stopAt = Clock::time_point::max();
  Clock::time_point m_killAt = Clock::time_point::max();
  bool m_isOver = false;
  std::exception_ptr m_failure;

  Launched m_launched;  // until it is over
  std::uint32_t m_id;
};

}  // namespace torvan::java::detail
