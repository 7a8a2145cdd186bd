// Nothing is left of programs that have ended: nothing in this process, and nothing of what they have started.
#include <atomic>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <mutex>

#include "java/processes/Probe.h"

namespace tests {
namespace {

using java::Ended;
using java::Process;

// A probe and three generations below it, one of them in its own group.
class Tree {
 public:
  ~Tree() {
    for (const unsigned long id : Ids()) {
      if (Runs(id)) KillOther(id);
    }
  }

  // The probe, after other steps. The function is called once all run.
  java::Program TheProbe(
      std::vector<std::string> steps = {}, const std::function<void()>& whenWhole = [] {}) {
    steps.insert(steps.end(), {"tree", Forever});
    return Probe(steps).OnOutputLine([this, whenWhole](std::string_view line) {
      {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_ids.push_back(std::stoul(std::string(line)));
      }
      if (IsWhole()) whenWhole();
    });
  }

  bool IsWhole() { return Ids().size() == 4; }
  void ExpectToRun() {
    ASSERT_TRUE(Eventually([this] { return IsWhole(); }));
    EXPECT_EQ(Running(), 4u);
  }
  void ExpectToBeGone() {
    EXPECT_TRUE(IsWhole());
    EXPECT_TRUE(Eventually([this] { return Running() == 0; }));
  }

 private:
  std::vector<unsigned long> Ids() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_ids;
  }
  std::size_t Running() {
    std::size_t count = 0;
    for (const unsigned long id : Ids()) count += Runs(id) ? 1 : 0;
    return count;
  }

  std::mutex m_mutex;
  std::vector<unsigned long> m_ids;
};

TEST(RunningLeftBehindTest, KillingEndsTheWholeTree) {
  Tree tree;
  Process process = java::Start(tree.TheProbe());
  tree.ExpectToRun();
  process.Kill();
  tree.ExpectToBeGone();
  EXPECT_EQ(process.Wait().ended, Ended::Killed);
}

TEST(RunningLeftBehindTest, DroppingEndsTheWholeTree) {
  const Held before = HeldNow();
  Tree tree;
  std::optional<Process> process = java::Start(tree.TheProbe());
  tree.ExpectToRun();
  process.reset();
  tree.ExpectToBeGone();
  ExpectHeld(before);
}

TEST(RunningLeftBehindTest, AStopThatHasToKillEndsTheWholeTree) {
  Tree tree;
  Process process = java::Start(tree.TheProbe({"deaf"}));
  tree.ExpectToRun();
  process.Stop(100ms);
  EXPECT_EQ(process.Wait().ended, Ended::Killed);
  tree.ExpectToBeGone();
}

TEST(RunningLeftBehindTest, ATimeLimitThatHasToKillEndsTheWholeTree) {
  EXPECT_TRUE(WithEnoughTime([](std::chrono::milliseconds limit) {
    Tree tree;
    const auto outcome = java::Run(tree.TheProbe({"deaf"}).TimeLimit(limit));
    EXPECT_EQ(outcome.ended, Ended::TimedOut);
    if (!tree.IsWhole()) return false;
    EXPECT_EQ(outcome.exitCode, 137);
    tree.ExpectToBeGone();
    return true;
  }));
}

TEST(RunningLeftBehindTest, AFunctionThatThrowsEndsTheWholeTree) {
  Tree tree;
  EXPECT_THROW(java::Run(tree.TheProbe({}, [] { throw std::domain_error("enough"); })), std::domain_error);
  tree.ExpectToBeGone();
}

TEST(RunningLeftBehindTest, WhatAProgramLeavesRunningAtItsOwnEndRunsOn) {
  const auto outcome = java::Run(Probe({"leaves", Forever}));
  const auto ids = Split(outcome.output, '\n');
  ASSERT_EQ(ids.size(), 1u);
  const unsigned long left = std::stoul(ids[0]);
  std::this_thread::sleep_for(100ms);  // whatever would end it
  EXPECT_TRUE(Runs(left));
  KillOther(left);
}

TEST(RunningLeftBehindTest, NothingIsHeldWhenAProgramHasEnded) {
  java::Run(Probe({"exit", "0"}));
  const Held before = HeldNow();
  const Process process = java::Start(Probe({"echo"}).Input("x"));
  process.Wait();
  ExpectHeld(before);
}

TEST(RunningLeftBehindTest, NothingIsHeldWhenAProgramCannotStart) {
  const Held before = HeldNow();
  for (int i = 0; i < 20; ++i) {
    EXPECT_THROW(java::Start(Probe({}).Folder(ProbeHome() / "nowhere")), java::StartFailure);
    EXPECT_THROW(java::Run(Probe({}).InputFile(ProbeHome() / "nowhere")), java::StartFailure);
  }
  ExpectHeld(before);
}

TEST(RunningLeftBehindTest, ManyInARowLeaveNothing) {
  const auto round = [](int i) {
    switch (i % 4) {
      case 0:
        EXPECT_EQ(java::Run(Probe({"echo"}).Input("text")).output, "text");
        break;
      case 1:
        EXPECT_EQ(java::Start(Probe({"says", "x", "exit", "3"})).Wait().exitCode, 3);
        break;
      case 2:
        java::Start(Probe({"sleep", Forever}).KeepInputOpen());
        break;  // dropped while it runs
      default:
        java::Start(Probe({"echo"}).KeepInputOpen()).Kill();
    }
  };
  // PROCESS_ROUNDS says otherwise by hand.
  const char* const given = std::getenv("PROCESS_ROUNDS");
  const int count = given != nullptr ? std::atoi(given) : OnWindows ? 100 : 2000;  // a start takes longer there
  for (int i = 0; i < 50; ++i) round(i);
  const Held before = HeldNow();
  // For fewer rounds less, but more than one of the steps in which Windows takes memory, which are 64 KiB.
  const std::size_t limit = OnWindows ? 128 << 10 : 1 << 20;
  // What leaks grows each time.
  for (int tries = 1; tries <= 3; ++tries) {
    const std::size_t memory = MemoryNow();
    ASSERT_GT(memory, 0u);
    for (int i = 0; i < count; ++i) round(i);
    ExpectHeld(before);
    if (MemoryNow() < memory + limit) return;
  }
  ADD_FAILURE() << "grows with each " << count << " programs";
}

TEST(RunningLeftBehindTest, ADetachedProgramOutlivesItsStartAndLeavesNothing) {
  const Held before = HeldNow();
  const auto file = ProbeHome() / "detached.txt";
  const auto goOn = ProbeHome() / "go on";
  const std::uint32_t id =
      Probe({"says", "begun", "awaits", goOn.u8string(), "says", " ended"}).OutputFile(file).Detached();
  ExpectHeld(before);
  EXPECT_TRUE(Runs(id));
  std::ofstream(goOn) << "";
  EXPECT_TRUE(Eventually([id] { return !Runs(id); }));
  EXPECT_EQ(ReadFile(file), "begun ended");
}

// A host in its own process, which starts a program detached and writes its id as a line; "stays" makes it wait then.
java::Program DetachingHost(const std::string& stays) {
  const auto program = OwnProgram().parent_path() / OnThisSystem("detaching_host.exe", "detaching_host");
  const java::Runtime runtime({ProbeHome(), java::Version::Parse("17"), "", "x86_64", false, "", program, "PATH"});
  return java::Program::MainClass("Host").Runtime(runtime).Arguments({ProbeHome().u8string(), Forever, stays});
}

TEST(RunningLeftBehindTest, ADetachedProgramOutlivesAHostThatEnds) {
  const auto outcome = java::Run(DetachingHost("ends"));
  ASSERT_EQ(outcome.exitCode, 0) << outcome.error;
  const unsigned long id = std::stoul(outcome.output);
  std::this_thread::sleep_for(100ms);  // whatever would end it
  EXPECT_TRUE(Runs(id));
  KillOther(id);
}

// Our own job is one that no program may leave.
TEST(RunningLeftBehindTest, ADetachedProgramOutlivesAHostThatIsKilledUnlessAJobHoldsIt) {
  std::atomic<unsigned long> id = 0;
  Process host = java::Start(
      DetachingHost("stays").OnOutputLine([&id](std::string_view line) { id = std::stoul(std::string(line)); }));
  ASSERT_TRUE(Eventually([&id] { return id != 0; }));
  host.Kill();
  if (OnWindows) {
    EXPECT_TRUE(Eventually([&id] { return !Runs(id); }));
  } else {
    std::this_thread::sleep_for(100ms);  // whatever would end it
    EXPECT_TRUE(Runs(id));
    KillOther(id);
  }
}

}  // namespace
}  // namespace tests
