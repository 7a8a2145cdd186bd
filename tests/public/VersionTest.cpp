// The version that a host sees when it is compiled.
#include <torvan/Version.h>

#include <gtest/gtest.h>

#include <string>

namespace tests {
namespace {

TEST(VersionTest, TheTextIsMajorMinorPatch) {
  EXPECT_EQ(std::to_string(TORVAN_VERSION_MAJOR) + "." + std::to_string(TORVAN_VERSION_MINOR) + "." +
                std::to_string(TORVAN_VERSION_PATCH),
            TORVAN_VERSION_STRING);
}

TEST(VersionTest, TheNumberGrowsWithTheVersionAndServesThePreprocessor) {
#if TORVAN_VERSION_NUMBER < 10000
  FAIL() << "older than the first version";
#endif
  EXPECT_EQ(TORVAN_VERSION_NUMBER / 10000, TORVAN_VERSION_MAJOR);
  EXPECT_EQ(TORVAN_VERSION_NUMBER / 100 % 100, TORVAN_VERSION_MINOR);
  EXPECT_EQ(TORVAN_VERSION_NUMBER % 100, TORVAN_VERSION_PATCH);
}

}  // namespace
}  // namespace tests
