// A child process as the system has it. One implementation per system.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

#include "java/processes/StartPlan.h"

namespace torvan::java::detail {

using Clock = std::chrono::steady_clock;

// How a process ended: its exit code, or 128 and the number of the signal.
struct Exit {
  int code;
  bool bySignal;
};

// The code of a process that was killed: on Linux that of SIGKILL, on Windows the one that we pass.
constexpr int CodeOfKilled = 137;

// A child with its pipes. Wake(), HasEnded(), AskToStop() and KillTree() may be called on any thread, the last two not
// once Reap() has begun; all others are for one thread at a time. Only Wait() waits.
class Child {
 public:
  // Throws a StartFailure, or TooLong.
  explicit Child(const StartPlan& plan);
  // Kills it if it still runs, and frees what it holds.
  ~Child();
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  std::uint32_t Id() const noexcept;

  // Waits until the program has ended, or a pipe has something to read, or (where `forInput`) the input may take more,
  // or Wake() was called, or the time `until` has come. Throws a Failure when the system cannot wait, or could not
  // write what the input has taken.
  void Wait(bool forInput, Clock::time_point until);
  // Ends a Wait() that is under way, or the next one.
  void Wake() noexcept;

  bool HasEnded() const noexcept;
  // Reaps a child that has ended. Returns nothing when the system no longer knows the exit code.
  std::optional<Exit> Reap() noexcept;
  // Why Reap() returned nothing.
  static const char* WhyLost() noexcept;

  // What a stream has now, valid until the next call for it; empty when it has nothing. Once the program has ended and
  // this is empty, all that it has written was read. Throws a Failure when the system cannot read.
  std::string_view Read(Stream stream);
  // Tells whether the last Wait() has found that the input may take more.
  bool IsInputReady() const noexcept;
  // Returns how much of the text the input has taken; 0 when it can take nothing now, nullopt when it has no reader any
  // more. Throws a Failure when the system cannot write.
  std::optional<std::size_t> Write(std::string_view text);
  // Ends the input. Returns false when it has to be called again, because what was taken is still on its way.
  bool CloseInput() noexcept;

  // Asks the program to stop. Returns why that cannot be, or null.
  const char* AskToStop();
  // Kills the program and all that it has started, as far as the system finds it.
  void KillTree() noexcept;

 private:
  struct Parts;
  std::unique_ptr<Parts> m_parts;
};

// Starts a program that is no child of this process, and returns its id. Throws as Child does.
std::uint32_t StartApart(const StartPlan& plan);

}  // namespace torvan::java::detail
