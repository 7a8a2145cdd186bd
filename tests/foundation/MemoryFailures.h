// Operations whose allocations fail one after the other.
#pragma once

#include <mirel/base/MemoryException.h>
#include <rx/OutOfMemoryException.h>

#include "fakes/Allocations.h"
#include "fakes/Failure.h"

namespace tests {

// Runs an operation with its 1st, 2nd ... allocation failing. Each time it has to throw CMemoryException from `file`
// and to leak nothing; then `check` checks what must be unchanged. Returns the number of failing runs.
template <typename Operation, typename Check>
int FailEachAllocationOf(const char* file, Operation&& operation, Check&& check) {
  Failure failure;
  return FailEachAllocation([&] { failure = FailureOf(operation); },
                            [&](int, const Allocations& allocations) {
                              EXPECT_EQ(failure, Throws<mirel::base::CMemoryException>(file, AnyLine, nullptr));
                              EXPECT_EQ(allocations.Live(), 0u);
                              check();
                            });
}

// The same for what throws the root library's exception.
template <typename Operation, typename Check>
int FailEachRootAllocationOf(Operation&& operation, Check&& check) {
  bool caught = false;
  return FailEachAllocation(
      [&] {
        caught = false;
        try {
          operation();
        } catch (const RX::OutOfMemoryException&) {
          caught = true;
        }
      },
      [&](int, const Allocations& allocations) {
        EXPECT_TRUE(caught);
        EXPECT_EQ(allocations.Live(), 0u);
        check();
      });
}

}  // namespace tests
