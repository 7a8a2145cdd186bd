// Texts at the end of the memory that the process may read.
#include <gtest/gtest.h>
#include <rx/Text.h>
#include <sys/mman.h>
#include <unistd.h>

namespace tests {
namespace {

TEST(TextTest, LengthIsFoundWithoutReadingThePageAfterTheText) {
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  void* const pages = mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  ASSERT_NE(pages, MAP_FAILED);
  ASSERT_EQ(mprotect(static_cast<char*>(pages) + page, page, PROT_NONE), 0);
  auto* const units = static_cast<RX::UniChar*>(pages);
  const std::size_t count = page / sizeof(RX::UniChar);
  for (std::size_t i = 0; i + 1 < count; ++i) units[i] = RX_TEXT('x');
  units[count - 1] = 0;
  for (std::size_t length = 0; length < 200; ++length) {
    EXPECT_EQ(RX::ucslen(units + count - 1 - length), length);
  }
  EXPECT_EQ(munmap(pages, 2 * page), 0);
}

}  // namespace
}  // namespace tests
