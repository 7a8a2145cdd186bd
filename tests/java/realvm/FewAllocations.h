// Lets C++ run out of memory in one thread, on a real VM.
#pragma once

#include <ThisSystem.h>
#include <string>

#include "java/realvm/NothingLeft.h"

namespace tests {

// While it lives, operator new throws std::bad_alloc in this thread once it was called so many times.
class FewAllocations {
 public:
  explicit FewAllocations(long count) noexcept;
  FewAllocations(const FewAllocations&) = delete;
  FewAllocations& operator=(const FewAllocations&) = delete;
  ~FewAllocations();

  // Whether it has thrown.
  static bool HaveRunOut() noexcept;
};

class FewAllocationsTest : public NothingLeftTest {
 public:
  // Runs it with memory for one more allocation each time, until that is enough. It throws each time, leaves no
  // reference, and nothing is pending.
  template <typename Operation>
  static void ExpectNothingWithoutMemory(Operation operation, long atLeast) {
    operation();
    ExpectNothingPendingWithoutMemory(
        [&operation](long count) {
          const CountedReferences counted(java::detail::Env());
          const std::string thrown = ThrownWith(count, operation);
          EXPECT_EQ(counted.Locals(), 0);
          EXPECT_EQ(counted.Globals(), 0);
          // One that succeeds may keep some, as a native method's function does for as long as its class.
          if (!thrown.empty()) {
            EXPECT_EQ(counted.Weaks(), 0);
          }
          return thrown;
        },
        atLeast);
  }

  // Does the same with an operation that has never run before, and runs it once more with enough memory. References are
  // not counted, because a run that fails may keep what it has finished for the next one.
  template <typename Operation>
  static void ExpectToSucceedAtLast(Operation operation, long atLeast) {
    ExpectNothingPendingWithoutMemory([&operation](long count) { return ThrownWith(count, operation); }, atLeast);
    operation();
  }

 private:
  template <typename Operation>
  static std::string ThrownWith(long count, const Operation& operation) {
    const FewAllocations few(count);
    try {
      operation();
    } catch (const std::bad_alloc&) {
      return "std::bad_alloc";
    } catch (const java::Error&) {
      return "Java's";
    }
    return {};
  }

  template <typename Run>
  static void ExpectNothingPendingWithoutMemory(const Run& run, long atLeast) {
    long steps = 0;
    for (bool hasRunOut = true; hasRunOut && !HasFailure(); ++steps) {
      SCOPED_TRACE("with " + std::to_string(steps));
      const std::string thrown = run(steps);
      hasRunOut = FewAllocations::HaveRunOut();
      EXPECT_EQ(!thrown.empty(), hasRunOut) << thrown;
      EXPECT_EQ(java::detail::Env()->ExceptionCheck(), JNI_FALSE);
    }
    EXPECT_GT(steps, OnWindows ? 1 : atLeast);  // there the C++ library is a DLL, with its own operator new
  }
};

}  // namespace tests
