// A root allocator that keeps every block.
#pragma once

#include <rx/Memory.h>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace tests {

// Replaces the root allocator and keeps every block until its own end, for tests in which a block is lost or freed
// twice on purpose.
class KeptBlocks {
 public:
  // Makes the n-th allocation fail; with 0 none fails.
  explicit KeptBlocks(int failing = 0) {
    s_failing = failing;
    s_inner = RX::ReplaceAllocator({Take, GiveBack});
  }
  ~KeptBlocks() {
    RX::ReplaceAllocator(s_inner);
    s_blocks.clear();
  }
  KeptBlocks(const KeptBlocks&) = delete;
  KeptBlocks& operator=(const KeptBlocks&) = delete;

  int TimesGivenBack(const void* address) const {
    const Block* const block = Find(address);
    return block != nullptr ? block->timesGivenBack : 0;
  }
  std::size_t NeverGivenBack() const {
    return static_cast<std::size_t>(
        std::count_if(s_blocks.begin(), s_blocks.end(), [](const Block& block) { return block.timesGivenBack == 0; }));
  }

 private:
  struct Block {
    std::vector<std::max_align_t> memory;
    int timesGivenBack = 0;
  };

  static Block* Find(const void* address) {
    for (Block& block : s_blocks) {
      if (block.memory.data() == address) return &block;
    }
    return nullptr;
  }
  static void* Take(std::size_t size) {
    if (--s_failing == 0) return nullptr;
    s_blocks.emplace_back().memory.resize(size / sizeof(std::max_align_t) + 1);
    return s_blocks.back().memory.data();
  }
  static void GiveBack(void* address) {
    if (Block* const block = Find(address)) {
      ++block->timesGivenBack;
    } else {
      s_inner.release(address);
    }
  }

  static inline std::vector<Block> s_blocks;
  static inline int s_failing = 0;
  static inline RX::Allocator s_inner{};
};

}  // namespace tests
