// The root allocator, watched and made to fail.
#pragma once

#include <gtest/gtest.h>
#include <rx/Memory.h>

#include <cstddef>
#include <cstring>
#include <map>
#include <vector>

namespace tests {

// Stands in for the root allocator while it lives. One at a time.
// A block is full of one byte when it is taken and of another when it is given back, so that what is read too early or
// too late is neither zero nor what was right before.
class Allocations {
 public:
  static constexpr unsigned char Fresh = 0xCD;
  static constexpr unsigned char Stale = 0xDD;

  struct Block {
    void* address;
    std::size_t size;  // as asked for
  };

  Allocations() {
    Fail(0);
    s_live.clear();
    s_inner = RX::ReplaceAllocator({Allocate, Release});
  }
  ~Allocations() { RX::ReplaceAllocator(s_inner); }
  Allocations(const Allocations&) = delete;
  Allocations& operator=(const Allocations&) = delete;

  // Lets the n-th allocation from now fail, 1 being the next; 0 lets none fail.
  void Fail(int n) {
    s_made = 0;
    s_failing = n;
    s_taken.clear();
  }
  // Tells whether the allocation that was to fail was asked for.
  bool HasFailed() const { return s_failing != 0 && s_made >= s_failing; }

  // How many blocks taken since this was made are not given back.
  std::size_t Live() const { return s_live.size(); }
  int Made() const { return s_made; }
  // The bytes that were last asked for.
  std::size_t LastSize() const { return s_size; }
  // The blocks taken since this was made or the last Fail(), in order, those given back since included.
  const std::vector<Block>& Taken() const { return s_taken; }

 private:
  static void* Allocate(std::size_t size) {
    s_size = size;
    if (++s_made == s_failing) return nullptr;
    void* const block = s_inner.allocate(size);
    std::memset(block, Fresh, size);
    s_live[block] = size;
    s_taken.push_back({block, size});
    return block;
  }
  static void Release(void* block) {
    const auto live = s_live.find(block);
    if (live != s_live.end()) {
      std::memset(block, Stale, live->second);
      s_live.erase(live);
    }
    s_inner.release(block);
  }

  static inline RX::Allocator s_inner{};
  static inline int s_failing = 0;
  static inline int s_made = 0;
  static inline std::size_t s_size = 0;
  static inline std::map<void*, std::size_t> s_live;
  static inline std::vector<Block> s_taken;
};

// Runs `operation` with its 1st, 2nd, 3rd ... allocation failing until one run needs no more; calls `afterFailure`
// after each that failed, with the number of the allocation and the watch. The operation itself catches and judges what
// it throws. Gives the number of failing runs.
template <typename Operation, typename AfterFailure>
int FailEachAllocation(Operation&& operation, AfterFailure&& afterFailure) {
  Allocations allocations;
  for (int n = 1;; ++n) {
    SCOPED_TRACE(::testing::Message() << "allocation " << n << " fails");
    allocations.Fail(n);
    operation();
    const bool failed = allocations.HasFailed();
    allocations.Fail(0);
    if (!failed) return n - 1;
    afterFailure(n, allocations);
  }
}

}  // namespace tests
