// What Run() returns, and what streams carry.
#include <fstream>
#include <thread>

#include "java/processes/Probe.h"

namespace tests {
namespace {

using java::Ended;
using java::Outcome;
namespace fs = std::filesystem;

TEST(ProcessRunTest, OutputAndErrorAreCapturedApart) {
  const Outcome outcome = java::Run(Probe({"says", "to the output", "complains", "to the error", "exit", "3"}));
  EXPECT_EQ(outcome.output, "to the output");
  EXPECT_EQ(outcome.error, "to the error");
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(outcome.ended, Ended::Exited);
}

TEST(ProcessRunTest, AnExitCodeOf127IsTheProgramsOwn) {
  const Outcome outcome = java::Run(Probe({"exit", "127"}));
  EXPECT_EQ(outcome.exitCode, 127);
  EXPECT_EQ(outcome.ended, Ended::Exited);
}

// Some of which the system would use for exceptions.
TEST(ProcessRunTest, EveryExitCodeIsTheProgramsOwn) {
  for (const int code : {-1, 255, 129, 137, -2147483647, -536870912}) {
    const Outcome outcome = java::Run(Probe({"exit", std::to_string(code)}));
    EXPECT_EQ(outcome.exitCode, OnWindows ? code : code & 255);
    EXPECT_EQ(outcome.ended, Ended::Exited) << code;
  }
}

TEST(ProcessRunTest, TheInputIsEmptyUnlessGiven) { EXPECT_EQ(java::Run(Probe({"echo", "says", "end"})).output, "end"); }

TEST(ProcessRunTest, TheInputIsWhatIsGiven) {
  const std::string text("a\0b\r\n\xFF", 6);
  EXPECT_EQ(java::Run(Probe({"echo"}).Input(text)).output, text);
  EXPECT_EQ(java::Run(Probe({"echo"}).Input("")).output, "");
}

TEST(ProcessRunTest, TheInputComesFromAFile) {
  const fs::path file = ProbeHome() / "input.txt";
  std::ofstream(file, std::ios::binary) << "from a file\n";
  EXPECT_EQ(java::Run(Probe({"echo"}).InputFile(file)).output, "from a file\n");
}

TEST(ProcessRunTest, TheInputComesFromAFunctionUntilItReturnsNothing) {
  int calls = 0;
  const auto next = [&calls]() -> std::optional<std::string> {
    ++calls;
    if (calls == 2) return "";  // not the end
    if (calls > 3) return std::nullopt;
    return std::to_string(calls) + ";";
  };
  EXPECT_EQ(java::Run(Probe({"echo"}).InputFrom(next)).output, "1;3;");
  EXPECT_EQ(calls, 4);
}

TEST(ProcessRunTest, AFunctionThatHasNothingYetIsAskedAgainLater) {
  int calls = 0;
  std::chrono::steady_clock::time_point begin;
  const auto next = [&]() -> std::optional<std::string> {
    if (++calls == 1) begin = std::chrono::steady_clock::now();
    if (std::chrono::steady_clock::now() - begin > 300ms) return std::nullopt;
    return "";
  };
  EXPECT_EQ(java::Run(Probe({"echo", "says", "end"}).InputFrom(next)).output, "end");
  EXPECT_GT(calls, 1);
  EXPECT_LT(calls, 40);
}

TEST(ProcessRunTest, InputThatTheProgramDoesNotReadIsDropped) {
  const Outcome outcome = java::Run(Probe({"says", "done"}).Input(std::string(1 << 20, 'x')));
  EXPECT_EQ(outcome.output, "done");
  EXPECT_EQ(outcome.ended, Ended::Exited);
  EXPECT_EQ(outcome.exitCode, 0);
}

TEST(ProcessRunTest, AHundredMegabytesFlowEachWayAtOnce) {
  constexpr std::size_t Size = 100 << 20;
  const Outcome outcome = java::Run(Probe({"flood", std::to_string(Size)}).Input(std::string(Size, 'i')));
  ASSERT_EQ(outcome.output.size(), Size + std::string("\n104857600\n").size());
  EXPECT_EQ(outcome.output.substr(Size), "\n104857600\n");
  EXPECT_EQ(outcome.output.find_first_not_of('o'), Size);
  ASSERT_EQ(outcome.error.size(), Size);
  EXPECT_EQ(outcome.error.find_first_not_of('e'), std::string::npos);
}

TEST(ProcessRunTest, LinesComeAsTheyAreWritten) {
  std::vector<std::string> lines;
  std::vector<std::string> errors;
  std::size_t linesAtTheEndOfInput = 0;
  const auto begin = std::chrono::steady_clock::now();
  const std::thread::id here = std::this_thread::get_id();
  // The program writes more only after the end of its input, which waits for the first line.
  const Outcome outcome = java::Run(Probe({"says", "one\r\nt", "echo", "says", "wo\n\nlast", "complains", "e\n"})
                                        .InputFrom([&]() -> std::optional<std::string> {
                                          linesAtTheEndOfInput = lines.size();
                                          const auto time = std::chrono::steady_clock::now() - begin;
                                          if (lines.empty() && time < Patience) return "";
                                          return std::nullopt;
                                        })
                                        .OnOutputLine([&](std::string_view line) {
                                          lines.emplace_back(line);
                                          EXPECT_EQ(std::this_thread::get_id(), here);
                                        })
                                        .OnErrorLine([&](std::string_view line) { errors.emplace_back(line); }));
  EXPECT_EQ(lines, (std::vector<std::string>{"one", "two", "", "last"}));
  EXPECT_EQ(errors, std::vector<std::string>{"e"});
  EXPECT_EQ(outcome.output, "");
  EXPECT_EQ(linesAtTheEndOfInput, 1u);
}

TEST(ProcessRunTest, OutputGoesToFiles) {
  const fs::path out = ProbeHome() / "out.txt";
  const fs::path error = ProbeHome() / "error.txt";
  std::ofstream(out) << "what was there before";
  const Outcome outcome = java::Run(Probe({"says", "o", "complains", "e"}).OutputFile(out).ErrorFile(error));
  EXPECT_EQ(outcome.output + outcome.error, "");
  EXPECT_EQ(ReadFile(out), "o");
  EXPECT_EQ(ReadFile(error), "e");
}

TEST(ProcessRunTest, BothOutputsMayGoToOneFile) {
  const fs::path file = ProbeHome() / "both.txt";
  for (const fs::path& other : {file, ProbeHome() / "." / "both.txt"}) {
    std::ofstream(file) << "what was there before";
    java::Run(Probe({"says", "1", "complains", "2", "says", "3"}).OutputFile(file).ErrorFile(other));
    EXPECT_EQ(ReadFile(file), "123") << other;
  }
}

TEST(ProcessRunTest, WhatIsInheritedArrivesInTheHostsOwnStream) {
  const fs::path out = ProbeHome() / "own out.txt";
  const fs::path error = ProbeHome() / "own error.txt";
  const java::Program program = Probe({"says", "o", "complains", "e"});
  for (const bool isOutput : {true, false}) {
    java::Program inheriting = program;
    isOutput ? inheriting.InheritOutput() : inheriting.InheritError();
    Outcome outcome;
    {
      const OwnStreamToFile ownOutput(1, out);
      const OwnStreamToFile ownError(2, error);
      outcome = java::Run(inheriting);
    }
    EXPECT_EQ(ReadFile(out), isOutput ? "o" : "");
    EXPECT_EQ(ReadFile(error), isOutput ? "" : "e");
    EXPECT_EQ(outcome.output, isOutput ? "" : "o");
    EXPECT_EQ(outcome.error, isOutput ? "e" : "");
    EXPECT_EQ(outcome.exitCode, 0);
  }
}

TEST(ProcessRunTest, ADetachedProgramInheritsBothOutputs) {
  const fs::path out = ProbeHome() / "own out.txt";
  const fs::path error = ProbeHome() / "own error.txt";
  std::uint32_t id = 0;
  {
    const OwnStreamToFile ownOutput(1, out);
    const OwnStreamToFile ownError(2, error);
    id = Probe({"says", "o", "complains", "e"}).InheritOutput().InheritError().Detached();
  }
  EXPECT_TRUE(Eventually([id] { return !Runs(id); }));
  EXPECT_EQ(ReadFile(out), "o");
  EXPECT_EQ(ReadFile(error), "e");
}

TEST(ProcessRunTest, WhatThrowsInAFunctionEndsTheProgramAndComesOut) {
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_THROW(java::Run(Probe({"says", "line\n", "sleep", Forever}).OnOutputLine([](std::string_view) {
                 throw std::domain_error("of a line");
               })),
               std::domain_error);
  EXPECT_THROW(java::Run(Probe({"sleep", Forever}).InputFrom([]() -> std::optional<std::string> {
                 throw std::range_error("of the input");
               })),
               std::range_error);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, Patience);
}

TEST(ProcessRunTest, AProgramThatTakesTooLongIsStopped) {
  EXPECT_TRUE(WithEnoughTime([](std::chrono::milliseconds limit) {
    const Outcome outcome = java::Run(Probe({"orderly", "7", "says", "begun", "sleep", Forever}).TimeLimit(limit));
    EXPECT_EQ(outcome.ended, Ended::TimedOut);
    // On a busy machine it may not have begun, or not end within the grace.
    return outcome.exitCode == 7 && outcome.output == "begun";
  }));
}

TEST(ProcessRunTest, AProgramThatTakesTooLongAndDoesNotStopIsKilled) {
  EXPECT_TRUE(WithEnoughTime([](std::chrono::milliseconds limit) {
    bool isInTime = false;
    const auto begin = std::chrono::steady_clock::now();
    const Outcome outcome = java::Run(
        Probe({"deaf", "says", "begun\n", "sleep", Forever}).TimeLimit(limit).OnOutputLine([&](std::string_view) {
          isInTime = std::chrono::steady_clock::now() < begin + limit;
        }));
    EXPECT_EQ(outcome.ended, Ended::TimedOut);
    if (!isInTime) return false;  // it may not have been deaf yet
    EXPECT_EQ(outcome.exitCode, 137);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, limit + 2s);
    return true;
  }));
}

TEST(ProcessRunTest, AProgramWithinItsTimeIsLeftAlone) {
  EXPECT_EQ(java::Run(Probe({"sleep", "100"}).TimeLimit(std::chrono::milliseconds::max())).ended, Ended::Exited);
}

TEST(ProcessRunTest, ASignalFromElsewhereIsTold) {
  const Outcome outcome = java::Run(Probe({"signal", "6"}));
  EXPECT_EQ(static_cast<unsigned>(outcome.exitCode), OnWindows ? 0xC0000005u : 134u);
  EXPECT_EQ(outcome.ended, Ended::Signalled);
}

TEST(ProcessRunTest, AGrandchildThatHoldsThePipesIsNotWaitedFor) {
  const Outcome outcome = java::Run(Probe({"says", "first\n", "leaves", Forever, "says", "second"}));
  const std::vector<std::string> lines = Split(outcome.output, '\n');
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0], "first");
  EXPECT_EQ(lines[2], "second");
  const unsigned long grandchild = std::stoul(lines[1]);
  EXPECT_TRUE(Runs(grandchild));
  KillOther(grandchild);
}

TEST(ProcessRunTest, TheFolderIsTheProgramsOwn) {
  const fs::path folder = fs::canonical(ProbeHome() / "empty");
  EXPECT_EQ(java::Run(Probe({"folder"}).Folder(folder)).output, folder.u8string());
  EXPECT_EQ(java::Run(Probe({"folder"})).output, fs::current_path().u8string());
}

TEST(ProcessRunTest, AnInputThatIsKeptOpenNeedsAProcess) {
  ExpectThrow<java::Misuse>([] { java::Run(Probe({}).KeepInputOpen()); },
                            "an input that is kept open needs a Process to write to it: use Start()");
}

}  // namespace
}  // namespace tests
