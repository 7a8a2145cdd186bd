#include <gtest/gtest.h>
#include <torvan/java/Failure.h>
#include <torvan/java/VersionRange.h>

namespace tests {
namespace {

using namespace torvan::java;

bool Has(const VersionRange& range, const char* version) { return range.Contains(Version::Parse(version)); }

template <typename Make>
std::string FailureOfMaking(Make make) {
  try {
    make();
  } catch (const Misuse& failure) {
    return failure.what();
  }
  return "no failure";
}

TEST(VersionRangeTest, WithoutBoundsHasAllVersions) {
  EXPECT_TRUE(Has({}, "1.4.2"));
  EXPECT_TRUE(Has({}, "99-ea"));
  EXPECT_EQ(VersionRange().ToString(), "any version");
}

TEST(VersionRangeTest, TheLowerBoundRanksAsJavaDoes) {
  const VersionRange range = AtLeast(11);
  EXPECT_TRUE(Has(range, "11"));
  EXPECT_TRUE(Has(range, "11.0.2+9"));
  EXPECT_TRUE(Has(range, "21"));
  EXPECT_FALSE(Has(range, "11-ea+28"));
  EXPECT_FALSE(Has(range, "10.0.2"));
  EXPECT_FALSE(Has(range, "1.8.0_391"));
  EXPECT_TRUE(Has(AtLeast("1.8"), "8u5"));
  EXPECT_FALSE(Has(AtLeast("17.0.9"), "17.0.8"));
  EXPECT_TRUE(Has(AtLeast("17.0.9"), "17.0.9+9"));
}

TEST(VersionRangeTest, TheUpperBoundTakesAllThatItFits) {
  const VersionRange range = AtMost(21);
  EXPECT_TRUE(Has(range, "21"));
  EXPECT_TRUE(Has(range, "21.0.99+1"));
  EXPECT_TRUE(Has(range, "21-ea"));
  EXPECT_TRUE(Has(range, "1.8.0_391"));
  EXPECT_FALSE(Has(range, "22-ea"));
  EXPECT_TRUE(Has(AtMost("17.0.9"), "17.0.9.1+1"));
  EXPECT_FALSE(Has(AtMost("17.0.9"), "17.0.10"));
  EXPECT_TRUE(Has(AtMost(8), "1.8.0_391"));
}

TEST(VersionRangeTest, BothBoundsCount) {
  for (const VersionRange& range : {AtLeast(11).AtMost(21), AtMost(21).AtLeast(11)}) {
    EXPECT_TRUE(Has(range, "11"));
    EXPECT_TRUE(Has(range, "21.0.1"));
    EXPECT_FALSE(Has(range, "10"));
    EXPECT_FALSE(Has(range, "22"));
    EXPECT_EQ(range.ToString(), "at least 11 and at most 21");
  }
  EXPECT_EQ(AtLeast("17.0.9").ToString(), "at least 17.0.9");
  EXPECT_EQ(AtMost(8).ToString(), "at most 8");
}

TEST(VersionRangeTest, OneVersionMayBeBothBounds) {
  EXPECT_TRUE(Has(AtLeast(17).AtMost(17), "17.0.15"));
  EXPECT_TRUE(Has(AtLeast("17.0.9").AtMost(17), "17.0.15"));
  EXPECT_FALSE(Has(AtLeast("17.0.9").AtMost(17), "17.0.8"));
}

TEST(VersionRangeTest, RefusesWhatMakesNoSense) {
  EXPECT_EQ(FailureOfMaking([] { AtLeast(21).AtMost(11); }), "No version of Java is at least 21 and at most 11");
  EXPECT_EQ(FailureOfMaking([] { AtMost(11).AtLeast("11.0.1").AtLeast(12); }),
            "No version of Java is at least 12 and at most 11");
  EXPECT_EQ(FailureOfMaking([] { AtLeast(0); }), "\"0\" is not a version of Java");
  EXPECT_EQ(FailureOfMaking([] { AtMost(-3); }), "\"-3\" is not a version of Java");
  EXPECT_EQ(FailureOfMaking([] { AtMost("new"); }), "\"new\" is not a version of Java");
}

TEST(VersionRangeTest, ARefusedBoundChangesNothing) {
  VersionRange range = AtLeast(11).AtMost(21);
  EXPECT_THROW(range.AtLeast(22), Misuse);
  EXPECT_THROW(range.AtMost(10), Misuse);
  EXPECT_THROW(range.AtMost("x"), Misuse);
  EXPECT_EQ(range.ToString(), "at least 11 and at most 21");
}

}  // namespace
}  // namespace tests
