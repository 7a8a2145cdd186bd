// Nothing is left of programs that have ended: nothing in this process, and nothing of what they have started.
#include <fstream>
#include <mutex>

#include "java/processes/Probe.h"

namespace tests {
namespace {

using java::Ended;
using java::Process;

// A probe with three generations below it, one of them in its own group, and their ids.
class Tree {
 public:
  Tree()
      : m_process(java::Start(Probe({"tree", Forever}).OnOutputLine([this](std::string_view line) {
          const std::lock_guard<std::mutex> lock(m_mutex);
          m_ids.push_back(std::stoul(std::string(line)));
        }))) {
    EXPECT_TRUE(Eventually([this] { return Ids().size() == 4; }));
    EXPECT_EQ(Running(), 4u);
  }

  std::vector<unsigned long> Ids() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_ids;
  }
  std::size_t Running() {
    std::size_t count = 0;
    for (const unsigned long id : Ids()) count += Runs(id) ? 1 : 0;
    return count;
  }
  std::optional<Process>& TheProcess() { return m_process; }

 private:
  std::mutex m_mutex;
  std::vector<unsigned long> m_ids;
  std::optional<Process> m_process;
};

TEST(RunningLeftBehindTest, KillingEndsTheWholeTree) {
  Tree tree;
  tree.TheProcess()->Kill();
  EXPECT_TRUE(Eventually([&] { return tree.Running() == 0; }));
  EXPECT_EQ(tree.TheProcess()->Wait().ended, Ended::Killed);
}

TEST(RunningLeftBehindTest, DroppingEndsTheWholeTree) {
  const Held before = HeldNow();
  Tree tree;
  tree.TheProcess().reset();
  EXPECT_TRUE(Eventually([&] { return tree.Running() == 0; }));
  ExpectHeld(before);
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
  constexpr int Count = OnWindows ? 200 : 2000;  // a start takes longer there
  for (int i = 0; i < Count / 4; ++i) round(i);
  const Held before = HeldNow();
  const std::size_t memory = MemoryNow();
  EXPECT_GT(memory, 0u);
  for (int i = 0; i < Count; ++i) round(i);
  ExpectHeld(before);
  EXPECT_LT(MemoryNow(), memory + (1 << 20));
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

}  // namespace
}  // namespace tests
