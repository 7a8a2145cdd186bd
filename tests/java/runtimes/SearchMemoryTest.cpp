// Memory that runs out, at each step of a search.
#include <gtest/gtest.h>
#include <torvan/java/Failure.h>

#include <cstdlib>
#include <new>

#include "ThreadSanitizer.h"
#include "java/runtimes/Choice.h"
#include "java/runtimes/MadeUpMachine.h"

namespace {

constexpr int Never = -1;
int s_allocationsLeft = Never;

}  // namespace

// These replace those of the whole program; the forms for arrays call them.
void* operator new(std::size_t size) {
  if (s_allocationsLeft == 0) throw std::bad_alloc();
  if (s_allocationsLeft > 0) --s_allocationsLeft;
  void* memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return operator new(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace tests {
namespace {

using namespace torvan::java;
using namespace torvan::java::detail;

class SearchMemoryTest : public testing::Test {
 protected:
  void SetUp() override {
    machine.Set("JAVA_HOME", machine.AddRuntime("home", "11"));
    machine.Set("JDK_HOME", machine.AddRuntime("other", "17"));
    machine.AddRuntime("path", "25");
    machine.Set("PATH", machine.Path("path/bin"));
  }

  MadeUpMachine machine;
};

// Runs `f` with memory for one more allocation each time, until that is enough. Every time but the last it throws
// std::bad_alloc.
template <typename F>
int StepsUntilThereIsEnough(F f) {
  for (int steps = 0;; ++steps) {
    s_allocationsLeft = steps;
    try {
      f();
      s_allocationsLeft = Never;
      return steps;
    } catch (const std::bad_alloc&) {
      s_allocationsLeft = Never;
    }
  }
}

TEST_F(SearchMemoryTest, WithoutMemoryNothingIsLost) {
  SKIP_AMOUNT_WITH_THREAD_SANITIZER();
  Runtimes runtimes;
  EXPECT_GT(StepsUntilThereIsEnough([&] { runtimes = SearchOf(machine); }), 100);
  EXPECT_EQ(runtimes.found.size(), 3u);
  EXPECT_TRUE(runtimes.refused.empty());
  EXPECT_GT(StepsUntilThereIsEnough([&] { EXPECT_EQ(Choose(machine, AtMost(17)).Version().Feature(), 11); }), 100);
}

TEST_F(SearchMemoryTest, TheReasonOfAFailureIsWholeOrThereIsNone) {
  SKIP_AMOUNT_WITH_THREAD_SANITIZER();
  std::string text;
  const VersionRange none = AtLeast(26);
  const int steps = StepsUntilThereIsEnough([&] {
    try {
      Choose(machine, none);
    } catch (const StartFailure& failure) {
      s_allocationsLeft = Never;
      text = failure.what();
    }
  });
  EXPECT_GT(steps, 100);
  EXPECT_NE(text.find("Looked at:"), std::string::npos);
}

}  // namespace
}  // namespace tests
