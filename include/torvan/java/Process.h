// A Java program that runs in its own process, and what became of it.
#pragma once

#include <torvan/java/Program.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace torvan::java {

namespace detail {
class Running;
}

// How a program ended.
enum class Ended {
  Exited,     // by itself
  Stopped,    // by itself, after Process::Stop() asked it to while it ran
  Killed,     // by Process::Kill(), or by a Stop() that had to
  TimedOut,   // by its time limit
  Signalled,  // by a signal that came from elsewhere; on Windows by an exception that nothing caught
};

// What became of a program.
struct Outcome {
  std::string output;  // what was captured: bytes as they came, which is UTF-8 unless the program says otherwise
  std::string error;
  int exitCode = 0;  // Java's own; 128 and the number for a signal; on Windows 137 for a program that was killed
  Ended ended = Ended::Exited;
};

// A program that was started.
// A thread in this process reads its output, writes its input, keeps its time limit and cleans up after it: once it has
// ended, no descriptor or handle is held, and no zombie is left. That thread takes no signals. Dropping a Process whose
// program runs kills the program with all that it has started, at once, and waits until a function of the program that
// is being called has returned; none is called after that. What the program leaves running at its own end runs on; a
// host that is process 1 or a subreaper gets that as a child and has to reap it. Any thread may call any member at any
// time, but nothing else may run while it is moved or dropped. A process that the host forks must not use it (a Misuse)
// and may drop it, which leaves the program alone.
class Process {
 public:
  Process(Process&& other) noexcept;
  Process& operator=(Process&& other) noexcept;
  ~Process();

  // The system's id of the process.
  std::uint32_t Id() const;

  // Writes to the program's input; a Misuse unless KeepInputOpen() was set.
  // Waits until the system has taken all of it; in a function that the program's own output calls, only queues it.
  // Returns false when the program has ended or reads no more: then some of the text was not taken.
  bool Write(std::string_view text);
  // Ends the input after what was written. The program sees the end of its input. Further calls do nothing.
  void CloseInput();

  // Waits until the program has ended. What is in its pipes then is read; others that hold them open are not waited
  // for. Throws what a function of the program threw, and a Failure when the exit code is lost because this process
  // ignores SIGCHLD or other code in it waits for every child.
  Outcome Wait() const;
  // The same, waiting at most that long; nullopt while the program still runs.
  std::optional<Outcome> Wait(std::chrono::milliseconds time) const;

  // Asks the program to stop in an orderly way, so that Java's shutdown hooks run, and waits until it has ended.
  // If it has not ended after the grace, it is killed with all that it has started. On Windows it is asked by Ctrl+C,
  // which this process can only send through the program's console, and only if it has no console itself. Otherwise
  // this throws a Failure, and the program runs on. A program ignores Ctrl+C from its start if this process does then,
  // and is killed after the grace. Once a time limit is over, at most two seconds of the grace are left; the program is
  // Stopped or Killed then, not TimedOut. Called from a function of the program it asks and does not wait.
  void Stop(std::chrono::milliseconds grace = std::chrono::seconds(10));
  // Ends the program and all that it has started, at once, and waits until the program is gone and a function of it
  // that is being called has returned. Called from such a function it does not wait. In a host that is process 1 or a
  // subreaper, all that was killed is reaped, here and wherever else a program is ended.
  void Kill();

 private:
  friend Process Start(const Program& program);
  explicit Process(std::shared_ptr<detail::Running> running);

  detail::Running& Own() const;

  std::shared_ptr<detail::Running> m_running;
};

// Runs a program to its end and returns what became of it.
// Everything happens on the calling thread, including functions of the program. Throws a StartFailure that names the
// step, the file and the system's reason when it cannot be started, what a function of the program threw, and what
// Process::Wait() says for a lost exit code. What the program itself does wrong is no exception: see the exit code.
Outcome Run(const Program& program);

// Starts a program and returns while it runs. Throws as Run() does.
Process Start(const Program& program);

}  // namespace torvan::java
