// The root allocator, watched and made to fail.
#pragma once

#include <gtest/gtest.h>
#include <rx/Memory.h>

#include <cstddef>
#include <cstring>
#include <map>
#include <vector>

namespace tests {

// Replaces the root allocator while it lives. One at a time.
// A new block is filled with one byte and a freed one with another, so that a read too early or too late finds neither
// zeros nor the right contents.
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

  // Makes the n-th allocation from now fail, 1 being the next; with 0 none fails.
  void Fail(int n) {
    s_made = 0;
    s_failing = n;
    s_taken.clear();
  }
  // Whether the allocation that was to fail has been requested.
  bool HasFailed() const { return s_failing != 0 && s_made >= s_failing; }

  // How many blocks allocated since this was made are not freed.
  std::size_t Live() const { return s_live.size(); }
  int Made() const { return s_made; }
  // The size of the last request, in bytes.
  std::size_t LastSize() const { return s_size; }
  // The blocks allocated since this was made or since the last Fail(), in order, including freed ones.
  const std::vector<Block>& Taken() const { return s_taken; }

 private:
  static void* Allocate(std::size_t size) {
    s_size = size;
    if (++s_made == s_failing) return nullptr;
    void* const block = s_inner.allocate(size);
    if (block == nullptr) return nullptr;
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
// after each that failed, with the number of the allocation and the watch. The operation itself catches and checks what
// it throws. Returns the number of failing runs.
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
