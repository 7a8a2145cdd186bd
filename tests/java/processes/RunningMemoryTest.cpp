// Memory that runs out, at each step of a program's life.
#include <atomic>
#include <cstdlib>
#include <new>

#include "java/processes/Probe.h"

namespace {

constexpr long Never = -1;
std::atomic<long> g_allocationsLeft = Never;

// Counts one. Returns false when none is left; then none is until the test says otherwise.
bool TakeOne() {
  long left = g_allocationsLeft;
  while (left > 0 && !g_allocationsLeft.compare_exchange_weak(left, left - 1)) {
  }
  return left != 0;
}

void* Allocate(std::size_t size) {
  if (!TakeOne()) throw std::bad_alloc();
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

// These replace those of the whole program; the other forms call them.
void* operator new(std::size_t size) { return Allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace tests {
namespace {

// On Windows the C++ library is a DLL, and its own allocations do not come here.
constexpr long FewestSteps = OnWindows ? 5 : 50;

using java::Outcome;
using java::Process;

// Runs it with memory for one more allocation each time, until that is enough. Each run must leave nothing.
template <class Function>
long StepsUntilThereIsEnough(const Function& function) {
  function();
  const Held before = HeldNow();
  for (long steps = 0;; ++steps) {
    bool isEnough = true;
    g_allocationsLeft = steps;
    try {
      function();
    } catch (const std::bad_alloc&) {
      isEnough = false;
    }
    g_allocationsLeft = Never;
    ExpectHeld(before, "with " + std::to_string(steps));
    if (isEnough || testing::Test::HasFailure()) return steps;
  }
}

TEST(RunningMemoryTest, ARunWithoutMemoryLeavesNothing) {
  const java::Program program = Probe({"echo", "complains", "e"}).Input(std::string(100, 'x'));
  EXPECT_GT(StepsUntilThereIsEnough([&program] {
              const Outcome outcome = java::Run(program);
              if (outcome.output != std::string(100, 'x') || outcome.error != "e") std::abort();
            }),
            FewestSteps);
}

TEST(RunningMemoryTest, AProcessWithoutMemoryLeavesNothing) {
  const java::Program program = Probe({"echo"}).KeepInputOpen();
  EXPECT_GT(StepsUntilThereIsEnough([&program] {
              Process process = java::Start(program);
              process.Write("a text that is too long to be kept in place");
              process.CloseInput();
              const Outcome outcome = process.Wait();
              if (outcome.output != "a text that is too long to be kept in place") std::abort();
            }),
            FewestSteps);
}

TEST(RunningMemoryTest, FunctionsWithoutMemoryLeaveNothing) {
  std::string lines;
  lines.reserve(100);
  int calls = 0;
  const java::Program program = Probe({"echo"})
                                    .InputFrom([&calls]() -> std::optional<std::string> {
                                      if (++calls > 2) return std::nullopt;
                                      return std::string(40, 'x') + "\n";
                                    })
                                    .OnOutputLine([&lines](std::string_view line) { lines += line.substr(0, 2); });
  EXPECT_GT(StepsUntilThereIsEnough([&] {
              lines.clear();
              calls = 0;
              java::Run(program);
              if (lines != "xxxx") std::abort();
            }),
            FewestSteps);
}

TEST(RunningMemoryTest, AnArgumentFileWithoutMemoryLeavesNothing) {
  const std::filesystem::path folder = ProbeHome() / "temporary";
  std::filesystem::create_directories(folder);
  UseTemporaryFolder(folder);
  const java::Program program = Probe({"says", "x", "exit", "0", std::string(200000, 'x')});
  EXPECT_GT(StepsUntilThereIsEnough([&] {
              try {
                if (java::Run(program).output != "x") std::abort();
              } catch (const std::bad_alloc&) {
                g_allocationsLeft = Never;
                EXPECT_TRUE(std::filesystem::is_empty(folder));
                throw;
              }
            }),
            FewestSteps);
  EXPECT_TRUE(std::filesystem::is_empty(folder));
}

TEST(RunningMemoryTest, ADetachedProgramWithoutMemoryLeavesNothing) {
  const java::Program program = Probe({"exit", "0"});
  EXPECT_GT(StepsUntilThereIsEnough([&program] {
              const std::uint32_t id = program.Detached();
              g_allocationsLeft = Never;
              if (!Eventually([id] { return !Runs(id); })) std::abort();
            }),
            FewestSteps);
}

TEST(RunningMemoryTest, KillingNeedsNoMemory) {
  for (long steps = 0; steps < 3; ++steps) {
    Process process = java::Start(Probe({"sleep", Forever}));
    g_allocationsLeft = steps;
    process.Kill();
    g_allocationsLeft = Never;
    EXPECT_EQ(process.Wait().ended, java::Ended::Killed);
  }
}

TEST(RunningMemoryTest, DroppingNeedsNoMemory) {
  const Held before = HeldNow();
  std::optional<Process> process = java::Start(Probe({"sleep", Forever}));
  const std::uint32_t id = process->Id();
  g_allocationsLeft = 0;
  process.reset();
  g_allocationsLeft = Never;
  EXPECT_FALSE(Runs(id));
  ExpectHeld(before);
}

}  // namespace
}  // namespace tests
