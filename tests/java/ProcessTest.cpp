// A program that was started: writing to it, waiting for it, ending it.
#include <atomic>
#include <thread>

#include "java/processes/Probe.h"
#include "java/processes/ThisProcess.h"

namespace tests {
namespace {

using java::Ended;
using java::Outcome;
using java::Process;

class ProcessTest : public testing::Test {
 protected:
  // A program that says when it has begun.
  static Process StartNow(std::vector<std::string> steps, std::atomic<bool>& begun) {
    steps.insert(steps.begin(), {"says", "begun\n"});
    return java::Start(Probe(steps).OnOutputLine([&begun](std::string_view) { begun = true; }));
  }
};

TEST_F(ProcessTest, WaitingReturnsTheOutcomeAsOftenAsAsked) {
  const Process process = java::Start(Probe({"says", "text", "exit", "5"}));
  EXPECT_GT(process.Id(), 1u);
  for (int i = 0; i < 2; ++i) {
    const Outcome outcome = process.Wait();
    EXPECT_EQ(outcome.output, "text");
    EXPECT_EQ(outcome.exitCode, 5);
    EXPECT_EQ(outcome.ended, Ended::Exited);
  }
}

TEST_F(ProcessTest, WaitingForATimeReturnsNothingWhileTheProgramRuns) {
  Process process = java::Start(Probe({"sleep", Forever}));
  EXPECT_FALSE(process.Wait(20ms));
  EXPECT_FALSE(process.Wait(0ms));
  EXPECT_FALSE(process.Wait(-5ms));
  // In nanoseconds of 64 bits that would be ten minutes, until the program's end.
  EXPECT_FALSE(process.Wait(-18446743473709ms));
  process.Kill();
  const auto outcome = process.Wait(0ms);
  ASSERT_TRUE(outcome);
  EXPECT_EQ(outcome->ended, Ended::Killed);
  EXPECT_EQ(outcome->exitCode, 137);
}

TEST_F(ProcessTest, SeveralThreadsWaitAtOnce) {
  Process process = java::Start(Probe({"echo", "says", "x", "exit", "4"}).KeepInputOpen());
  std::atomic<int> waiting = 0;
  std::atomic<int> right = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([&, i] {
      ++waiting;
      const Outcome outcome = i % 2 == 0 ? process.Wait() : process.Wait(2 * Patience).value();
      if (outcome.exitCode == 4 && outcome.output == "x") ++right;
    });
  }
  EXPECT_TRUE(Eventually([&waiting] { return waiting == 8; }));
  process.CloseInput();
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(right, 8);
}

TEST_F(ProcessTest, ATextIsWrittenAndItsEndIsSeen) {
  Process process = java::Start(Probe({"echo", "says", "!"}).Input("first ").KeepInputOpen());
  EXPECT_TRUE(process.Write("second "));
  EXPECT_TRUE(process.Write(""));
  EXPECT_TRUE(process.Write("third"));
  EXPECT_FALSE(process.Wait(50ms));
  process.CloseInput();
  process.CloseInput();
  EXPECT_EQ(process.Wait().output, "first second third!");
}

TEST_F(ProcessTest, AQuestionIsAnsweredFromAFunctionOfTheProgram) {
  std::vector<std::string> lines;
  std::atomic<Process*> self = nullptr;
  Process process =
      java::Start(Probe({"says", "what?\n", "echo"}).KeepInputOpen().OnOutputLine([&](std::string_view line) {
        while (self == nullptr) std::this_thread::yield();
        lines.emplace_back(line);
        if (line == "what?") {
          EXPECT_TRUE(self.load()->Write("this\n"));
          self.load()->CloseInput();
        }
      }));
  self = &process;
  process.Wait();
  EXPECT_EQ(lines, (std::vector<std::string>{"what?", "this"}));
}

TEST_F(ProcessTest, WritingWaitsUntilTheProgramReads) {
  Process process = java::Start(Probe({"sleep", "300", "flood", "1"}).KeepInputOpen());
  EXPECT_TRUE(process.Write(std::string(8 << 20, 'x')));
  process.CloseInput();
  EXPECT_EQ(process.Wait().output, "o\n8388608\n");
}

TEST_F(ProcessTest, WritingToAProgramThatReadsNoMoreSaysSo) {
  Process process = java::Start(Probe({"exit", "0"}).KeepInputOpen());
  process.Wait();
  EXPECT_FALSE(process.Write("x"));
  Process ends = java::Start(Probe({"sleep", "100"}).KeepInputOpen());
  EXPECT_FALSE(ends.Write(std::string(8 << 20, 'x')));
}

TEST_F(ProcessTest, WritingToAnInputThatIsNotOpenIsRefused) {
  Process process = java::Start(Probe({"sleep", Forever}).Input("x"));
  ExpectThrow<java::Misuse>([&] { process.Write("y"); }, "the input was not kept open: KeepInputOpen() does that");
  Process closed = java::Start(Probe({"sleep", Forever}).KeepInputOpen());
  closed.CloseInput();
  ExpectThrow<java::Misuse>([&] { closed.Write("y"); }, "the input was ended by CloseInput()");
  ExpectThrow<java::Misuse>([] { java::Start(Probe({}).InputFile("x").KeepInputOpen()); },
                            "an input that is a file cannot be kept open for more");
}

TEST_F(ProcessTest, AProgramStopsWhenItIsAsked) {
  std::atomic<bool> begun = false;
  Process process = StartNow({"sleep", Forever}, begun);
  ASSERT_TRUE(Eventually([&] { return begun.load(); }));
  process.Stop(Patience);
  const Outcome outcome = process.Wait();
  EXPECT_EQ(outcome.ended, Ended::Stopped);
  if (!OnWindows) {
    EXPECT_EQ(outcome.exitCode, 143);
  }
  process.Stop();  // it has ended
  process.Kill();
}

TEST_F(ProcessTest, AProgramThatEndsInOrderKeepsItsExitCode) {
  std::atomic<bool> begun = false;
  Process process = java::Start(
      Probe({"orderly", "42", "says", "begun\n", "sleep", Forever}).OnOutputLine([&begun](std::string_view) {
        begun = true;
      }));
  ASSERT_TRUE(Eventually([&] { return begun.load(); }));
  process.Stop(Patience);
  const Outcome outcome = process.Wait();
  EXPECT_EQ(outcome.ended, Ended::Stopped);
  EXPECT_EQ(outcome.exitCode, 42);
}

TEST_F(ProcessTest, AProgramThatDoesNotStopIsKilledAfterTheGrace) {
  std::atomic<bool> begun = false;
  Process process = java::Start(
      Probe({"deaf", "says", "begun\n", "sleep", Forever}).OnOutputLine([&begun](std::string_view) { begun = true; }));
  ASSERT_TRUE(Eventually([&] { return begun.load(); }));
  const auto begin = std::chrono::steady_clock::now();
  process.Stop(300ms);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, 300ms);
  const Outcome outcome = process.Wait();
  EXPECT_EQ(outcome.ended, Ended::Killed);
  EXPECT_EQ(outcome.exitCode, 137);
}

TEST_F(ProcessTest, ATimeLimitThatIsOverDuringAStopLeavesTwoSecondsOfItsGrace) {
  EXPECT_TRUE(WithEnoughTime([](std::chrono::milliseconds limit) {
    std::atomic<bool> begun = false;
    const auto begin = std::chrono::steady_clock::now();
    Process process = java::Start(
        Probe({"deaf", "says", "begun\n", "sleep", Forever}).TimeLimit(limit).OnOutputLine([&begun](std::string_view) {
          begun = true;
        }));
    EXPECT_TRUE(Eventually([&] { return begun.load(); }));
    if (std::chrono::steady_clock::now() > begin + limit / 2) return false;  // the limit might come first
    process.Stop(2 * Patience);
    const auto time = std::chrono::steady_clock::now() - begin;
    EXPECT_GE(time, limit + 2s);
    EXPECT_LT(time, Patience);
    EXPECT_EQ(process.Wait().ended, Ended::Killed);
    EXPECT_EQ(process.Wait().exitCode, 137);
    return true;
  }));
}

TEST_F(ProcessTest, AFunctionOfTheProgramMayEndIt) {
  for (const bool kills : {false, true}) {
    std::atomic<Process*> self = nullptr;
    Process process =
        java::Start(Probe({"says", "begun\n", "sleep", Forever}).OnOutputLine([&self, kills](std::string_view) {
          while (self == nullptr) std::this_thread::yield();
          kills ? self.load()->Kill() : self.load()->Stop(Patience);
        }));
    self = &process;
    EXPECT_EQ(process.Wait().ended, kills ? Ended::Killed : Ended::Stopped);
  }
}

TEST_F(ProcessTest, AFunctionOfTheProgramCannotWaitForIt) {
  std::atomic<Process*> self = nullptr;
  Process process = java::Start(Probe({"says", "begun\n"}).OnOutputLine([&self](std::string_view) {
    while (self == nullptr) std::this_thread::yield();
    self.load()->Wait();
  }));
  self = &process;
  ExpectThrow<java::Misuse>([&] { process.Wait(); }, "a function of the program cannot wait for the program's end");
}

TEST_F(ProcessTest, AFunctionOfTheProgramMayDropIt) {
  std::atomic<bool> dropped = false;
  auto process = std::make_shared<std::optional<Process>>();
  std::atomic<bool> isThere = false;
  // The function's own copy of this ends with all that the program held.
  const auto last = std::make_shared<int>();
  *process = java::Start(Probe({"says", "begun\n", "sleep", Forever}).OnOutputLine([&, last](std::string_view) {
    while (!isThere) std::this_thread::yield();
    process->reset();
    dropped = true;
  }));
  isThere = true;
  EXPECT_TRUE(Eventually([&last] { return last.use_count() == 1; }));
  EXPECT_TRUE(dropped);
}

TEST_F(ProcessTest, NoFunctionIsCalledOnceOneHasDroppedTheProcess) {
  std::atomic<int> lines = 0;
  std::atomic<int> inputs = 0;
  std::atomic<bool> isThere = false;
  auto process = std::make_shared<std::optional<Process>>();
  // The function's own copy of this ends when nothing can call it any more.
  const auto last = std::make_shared<int>();
  *process = java::Start(Probe({"echo", "sleep", Forever})
                             .InputFrom([&inputs]() -> std::optional<std::string> {
                               ++inputs;
                               return "1\n2\n3\n" + std::string(100000, '4');
                             })
                             .OnOutputLine([&, last](std::string_view) {
                               while (!isThere) std::this_thread::yield();
                               ++lines;
                               process->reset();
                               inputs = 0;
                             }));
  isThere = true;
  EXPECT_TRUE(Eventually([&last] { return last.use_count() == 1; }));
  EXPECT_EQ(lines, 1);
  EXPECT_EQ(inputs, 0);
}

TEST_F(ProcessTest, AProgramIsEndedWhileAFunctionOfItWaits) {
  enum class Way { Kill, Stop, Drop };
  for (const Way way : {Way::Kill, Way::Stop, Way::Drop}) {
    std::atomic<bool> isCalled = false;
    std::atomic<bool> isEnough = false;
    std::optional<Process> process =
        java::Start(Probe({"says", "begun\n", "sleep", Forever}).OnOutputLine([&](std::string_view) {
          isCalled = true;
          while (!isEnough) std::this_thread::sleep_for(1ms);
        }));
    const std::uint32_t id = process->Id();
    EXPECT_TRUE(Eventually([&] { return isCalled.load(); }));
    std::thread other([&] {
      if (way == Way::Kill) process->Kill();
      if (way == Way::Stop) process->Stop(300ms);
      if (way == Way::Drop) process.reset();
    });
    EXPECT_TRUE(Eventually([id] { return !Runs(id); })) << static_cast<int>(way);
    isEnough = true;
    other.join();
  }
}

TEST_F(ProcessTest, AProgramThatEndsByItselfMeanwhileHasExited) {
  const auto endsByItself = [](bool kills, std::chrono::milliseconds limit) {
    std::atomic<bool> isCalled = false;
    std::atomic<bool> isEnough = false;
    const auto begin = std::chrono::steady_clock::now();
    Process process =
        java::Start(Probe({"says", "begun\n", "exit", "3"}).TimeLimit(limit).OnOutputLine([&](std::string_view) {
          isCalled = true;
          while (!isEnough) std::this_thread::sleep_for(1ms);
        }));
    const auto over = std::chrono::steady_clock::now() + limit;
    EXPECT_TRUE(Eventually([&] { return !Runs(process.Id()); }));
    if (std::chrono::steady_clock::now() > begin + limit) {
      isEnough = true;
      return false;  // the limit may have ended it
    }
    EXPECT_TRUE(Eventually([&isCalled] { return isCalled.load(); }));
    std::thread other([&] { kills ? process.Kill() : process.Stop(0ms); });
    std::this_thread::sleep_until(over + 100ms);
    isEnough = true;
    other.join();
    EXPECT_EQ(process.Wait().ended, Ended::Exited);
    EXPECT_EQ(process.Wait().exitCode, 3);
    return true;
  };
  for (const bool kills : {false, true}) {
    EXPECT_TRUE(WithEnoughTime([&](std::chrono::milliseconds limit) { return endsByItself(kills, limit); }));
  }
}

TEST_F(ProcessTest, AProgramThatIsKilledAfterItWasAskedCountsByItsEnd) {
  // The program ends as soon as it is asked to, and the grace is at most 4 ms: either the stop or the kill may end it.
  for (int i = 0; i < 20; ++i) {
    std::atomic<bool> begun = false;
    Process process = java::Start(
        Probe({"orderly", "42", "says", "begun\n", "sleep", Forever}).OnOutputLine([&begun](std::string_view) {
          begun = true;
        }));
    ASSERT_TRUE(Eventually([&] { return begun.load(); }));
    process.Stop(std::chrono::milliseconds(i / 4));
    const Outcome outcome = process.Wait();
    EXPECT_EQ(outcome.ended, outcome.exitCode == 137 ? Ended::Killed : Ended::Stopped) << outcome.exitCode;
  }
}

TEST_F(ProcessTest, WhatAFunctionThrowsComesOutOfEveryWait) {
  const Process process = java::Start(
      Probe({"says", "x\n", "sleep", Forever}).OnOutputLine([](std::string_view) { throw std::domain_error("it"); }));
  EXPECT_THROW(process.Wait(), std::domain_error);
  EXPECT_THROW(process.Wait(0s), std::domain_error);
}

TEST_F(ProcessTest, TheTimeLimitIsKeptWhenNoOneWaits) {
  const Process process = java::Start(Probe({"sleep", Forever}).TimeLimit(100ms));
  EXPECT_TRUE(Eventually([&process] { return !Runs(process.Id()); }));
  const auto outcome = process.Wait(Patience);
  ASSERT_TRUE(outcome);
  EXPECT_EQ(outcome->ended, Ended::TimedOut);
}

TEST_F(ProcessTest, TheTimeLimitWaitsForAFunctionOfTheProgram) {
  EXPECT_TRUE(WithEnoughTime([](std::chrono::milliseconds limit) {
    std::atomic<std::uint32_t> id = 0;
    std::atomic<bool> isInTime = false;
    std::atomic<bool> ran = false;
    const auto begin = std::chrono::steady_clock::now();
    const Process process =
        java::Start(Probe({"says", "begun\n", "sleep", Forever}).TimeLimit(limit).OnOutputLine([&](std::string_view) {
          while (id == 0) std::this_thread::yield();
          isInTime = std::chrono::steady_clock::now() < begin + limit;
          std::this_thread::sleep_for(limit + 500ms);
          ran = Runs(id);
        }));
    id = process.Id();
    EXPECT_EQ(process.Wait().ended, Ended::TimedOut);
    EXPECT_TRUE(ran || !isInTime);
    return isInTime.load();
  }));
}

TEST_F(ProcessTest, AProcessIsMoved) {
  Process first = java::Start(Probe({"exit", "1"}));
  Process second = std::move(first);
  ExpectThrow<java::Misuse>([&] { first.Wait(); }, "the Process was moved from");
  first = java::Start(Probe({"exit", "2"}));
  EXPECT_EQ(first.Wait().exitCode, 2);
  first = std::move(second);
  EXPECT_EQ(first.Wait().exitCode, 1);
}

TEST_F(ProcessTest, SixtyFourRunAtATimeAndLeaveNothing) {
  ProbeHome();
  const Held before = HeldNow();
  std::vector<Process> processes;
  for (int i = 0; i < 64; ++i) {
    processes.push_back(
        java::Start(Probe({"echo", "says", std::to_string(i), "exit", std::to_string(i)}).KeepInputOpen()));
  }
  for (Process& process : processes) EXPECT_TRUE(process.Write("number "));
  for (Process& process : processes) process.CloseInput();
  for (int i = 0; i < 64; ++i) {
    const Outcome outcome = processes[static_cast<std::size_t>(i)].Wait();
    EXPECT_EQ(outcome.output, "number " + std::to_string(i));
    EXPECT_EQ(outcome.exitCode, i);
  }
  ExpectHeld(before, "all have ended");
  processes.clear();
  ExpectHeld(before);
}

}  // namespace
}  // namespace tests
