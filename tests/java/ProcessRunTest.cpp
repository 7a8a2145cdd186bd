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
  const auto begin = std::chrono::steady_clock::now();
  const auto next = [&]() -> std::optional<std::string> {
    ++calls;
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
  std::vector<std::chrono::steady_clock::time_point> times;
  const std::thread::id here = std::this_thread::get_id();
  const Outcome outcome =
      java::Run(Probe({"says", "one\r\nt", "sleep", "600", "says", "wo\n\nlast", "complains", "e\n"})
                    .OnOutputLine([&](std::string_view line) {
                      lines.emplace_back(line);
                      times.push_back(std::chrono::steady_clock::now());
                      EXPECT_EQ(std::this_thread::get_id(), here);
                    })
                    .OnErrorLine([&](std::string_view line) { errors.emplace_back(line); }));
  EXPECT_EQ(lines, (std::vector<std::string>{"one", "two", "", "last"}));
  EXPECT_EQ(errors, std::vector<std::string>{"e"});
  EXPECT_EQ(outcome.output, "");
  EXPECT_GE(times[1] - times[0], 300ms);
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

TEST(ProcessRunTest, WhatThrowsInAFunctionEndsTheProgramAndComesOut) {
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_THROW(java::Run(Probe({"says", "line\n", "sleep", "60000"}).OnOutputLine([](std::string_view) {
                 throw std::domain_error("of a line");
               })),
               std::domain_error);
  EXPECT_THROW(java::Run(Probe({"sleep", "60000"}).InputFrom([]() -> std::optional<std::string> {
                 throw std::range_error("of the input");
               })),
               std::range_error);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 30s);
}

TEST(ProcessRunTest, AProgramThatTakesTooLongIsStopped) {
  const auto begin = std::chrono::steady_clock::now();
  const Outcome outcome = java::Run(Probe({"orderly", "7", "says", "begun", "sleep", "60000"}).TimeLimit(3s));
  EXPECT_EQ(outcome.ended, Ended::TimedOut);
  EXPECT_EQ(outcome.exitCode, 7);
  EXPECT_EQ(outcome.output, "begun");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 30s);
}

TEST(ProcessRunTest, AProgramThatTakesTooLongAndDoesNotStopIsKilled) {
  const auto begin = std::chrono::steady_clock::now();
  const Outcome outcome = java::Run(Probe({"deaf", "sleep", "60000"}).TimeLimit(3s));
  EXPECT_EQ(outcome.ended, Ended::TimedOut);
  EXPECT_EQ(outcome.exitCode, 137);
  const auto time = std::chrono::steady_clock::now() - begin;
  EXPECT_GE(time, 5s);
  EXPECT_LT(time, 30s);
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
  const auto begin = std::chrono::steady_clock::now();
  const Outcome outcome = java::Run(Probe({"says", "first ", "leaves", "20000", "says", "second"}));
  EXPECT_EQ(outcome.output.substr(0, 6), "first ");
  EXPECT_EQ(outcome.output.substr(outcome.output.size() - 7), "\nsecond");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 10s);
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
