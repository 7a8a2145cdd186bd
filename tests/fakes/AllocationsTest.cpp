// The watched allocator of the tests.
#include "fakes/Allocations.h"

#include <cstdlib>

namespace tests {
namespace {

using Bytes = std::vector<unsigned char>;

Bytes BytesOf(const void* block, std::size_t size) {
  const auto* const bytes = static_cast<const unsigned char*>(block);
  return Bytes(bytes, bytes + size);
}

// Below the watch: sees the first five bytes of each freed block.
class AllocationsTest : public ::testing::Test {
 protected:
  ~AllocationsTest() override { RX::ReplaceAllocator(m_inner); }

  static inline Bytes s_returned;

 private:
  static void Release(void* block) {
    s_returned = BytesOf(block, 5);
    std::free(block);
  }

  const RX::Allocator m_inner = RX::ReplaceAllocator({nullptr, Release});
};

TEST_F(AllocationsTest, ABlockIsFullOfOneByteWhenItComesAndOfAnotherWhenItGoes) {
  const Allocations allocations;
  void* const block = RX_malloc(5);
  EXPECT_EQ(BytesOf(block, 5), Bytes(5, Allocations::Fresh));
  std::memset(block, 7, 5);
  RX_free(block);
  EXPECT_EQ(s_returned, Bytes(5, Allocations::Stale));
}

TEST_F(AllocationsTest, ABlockFromBeforeGoesAsItIs) {
  void* const block = RX_malloc(5);
  std::memset(block, 7, 5);
  const Allocations allocations;
  RX_free(block);
  EXPECT_EQ(s_returned, Bytes(5, 7));
}

TEST_F(AllocationsTest, WithoutMemoryThereIsNoBlock) {
  RX::ReplaceAllocator({[](std::size_t) -> void* { return nullptr; }, std::free});
  const Allocations allocations;
  EXPECT_EQ(RX_malloc(5), nullptr);
  EXPECT_EQ(allocations.Live(), 0u);
  EXPECT_EQ(allocations.Taken().size(), 0u);
}

}  // namespace
}  // namespace tests
