#include <gtest/gtest.h>
#include <rx/Memory.h>
#include <rx/OutOfMemoryException.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <type_traits>
#include <vector>

#include "foundation/plugin/Plugin.h"

namespace tests {
namespace {

std::vector<std::size_t> s_sizes;
std::vector<void*> s_released;

void* AllocateAndNote(std::size_t size) {
  void* const block = std::malloc(size);
  s_sizes.push_back(size);
  return block;
}

void ReleaseAndNote(void* block) {
  s_released.push_back(block);
  std::free(block);
}

void* AllocateNothing(std::size_t) { return nullptr; }

class MemoryTest : public ::testing::Test {
 protected:
  void SetUp() override {
    s_sizes.clear();
    s_released.clear();
  }
  void TearDown() override { RX::ReplaceAllocator({nullptr, nullptr}); }
};

TEST_F(MemoryTest, BlocksAreAlignedForAnyObject) {
  for (std::size_t size = 1; size < 100; ++size) {
    void* const block = RX_malloc(size);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignof(std::max_align_t), 0u) << size;
    RX_free(block);
  }
}

TEST_F(MemoryTest, ASizeOfZeroReturnsABlockThatCanBeFreed) {
  void* const block = RX_malloc(0);
  EXPECT_NE(block, nullptr);
  RX_free(block);
}

TEST_F(MemoryTest, BlocksComeFromTheCurrentAllocatorAndGoBackToIt) {
  RX::ReplaceAllocator({AllocateAndNote, ReleaseAndNote});
  void* const first = RX_malloc(24);
  void* const second = RX_malloc(7);
  RX_free(second);
  RX_free(first);
  EXPECT_EQ(s_sizes, (std::vector<std::size_t>{24, 7}));
  EXPECT_EQ(s_released, (std::vector<void*>{second, first}));
}

TEST_F(MemoryTest, TheAllocatorIsNeverAskedForZeroBytesNorGivenNull) {
  RX::ReplaceAllocator({AllocateAndNote, ReleaseAndNote});
  RX_free(RX_malloc(0));
  RX_free(nullptr);
  EXPECT_EQ(s_sizes, (std::vector<std::size_t>{1}));
  EXPECT_EQ(s_released.size(), 1u);
}

TEST_F(MemoryTest, ReplacingReturnsTheAllocatorUsedUntilNow) {
  RX::ReplaceAllocator({AllocateAndNote, ReleaseAndNote});
  const RX::Allocator previous = RX::ReplaceAllocator({AllocateNothing, nullptr});
  EXPECT_EQ(previous.allocate, &AllocateAndNote);
  EXPECT_EQ(previous.release, &ReleaseAndNote);
}

TEST_F(MemoryTest, MembersOfAnAllocatorThatIsReturnedAreNeverNull) {
  const RX::Allocator first = RX::ReplaceAllocator({nullptr, nullptr});
  ASSERT_NE(first.allocate, nullptr);
  ASSERT_NE(first.release, nullptr);
  first.release(first.allocate(8));
}

TEST_F(MemoryTest, ANullMemberMeansTheCLibrarysFunction) {
  RX::ReplaceAllocator({AllocateAndNote, nullptr});
  RX_free(RX_malloc(8));
  EXPECT_EQ(s_sizes.size(), 1u);
  RX::ReplaceAllocator({nullptr, ReleaseAndNote});
  RX_free(RX_malloc(8));
  EXPECT_EQ(s_sizes.size(), 1u);
  EXPECT_EQ(s_released.size(), 1u);
}

TEST_F(MemoryTest, ExhaustionReturnsNull) {
  RX::ReplaceAllocator({AllocateNothing, nullptr});
  EXPECT_EQ(RX_malloc(1), nullptr);
}

TEST_F(MemoryTest, WhatTheRootLibraryThrowsIsCaughtInAnotherLibraryAndInTheProgram) {
  EXPECT_FALSE(plugin::CatchesOutOfMemoryOfRootLibrary());
  RX::ReplaceAllocator({AllocateNothing, nullptr});
  EXPECT_TRUE(plugin::CatchesOutOfMemoryOfRootLibrary());
}

TEST_F(MemoryTest, TheRootLibrarysExceptionHasNoBaseInTheFoundation) {
  EXPECT_FALSE((std::is_base_of_v<mirel::base::CException, RX::OutOfMemoryException>));
  EXPECT_TRUE(std::is_empty_v<RX::OutOfMemoryException>);
}

}  // namespace
}  // namespace tests
