#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <torvan/java/Failure.h>
#include <torvan/java/Version.h>

#include <string>
#include <vector>

namespace tests {
namespace {

using namespace torvan::java;

Version V(std::string_view text) { return Version::Parse(text); }

std::string FailureOf(std::string_view text) {
  try {
    Version::Parse(text);
  } catch (const Misuse& failure) {
    EXPECT_STREQ(failure.GetSourceFile(), "java/Version");
    return failure.what();
  }
  return "no failure";
}

struct Row {
  const char* text;
  int feature;
};

class VersionTextTest : public testing::TestWithParam<Row> {};

// clang-format off
INSTANTIATE_TEST_SUITE_P(Texts, VersionTextTest, testing::Values(
    Row{"8", 8},                             Row{"17", 17},
    Row{"25-ea", 25},                        Row{"25-ea+12-1188", 25},
    Row{"9.0.4", 9},                         Row{"9.0.4+11", 9},
    Row{"9-internal+0-2016-04-14-195246.buildd.src", 9},
    Row{"9-Debian+0-9b181-4", 9},            Row{"10.0.2+13-Ubuntu-1ubuntu0.18.04.4", 10},
    Row{"11.0.2+9", 11},                     Row{"11.0.9.1+1-Ubuntu-0ubuntu1.20.04", 11},
    Row{"13+33", 13},                        Row{"17.0.15+6-Debian-1deb12u1", 17},
    Row{"17.0.9+9-LTS-201", 17},             Row{"17.0.5+8-jvmci-22.3-b08", 17},
    Row{"19-loom+6-625", 19},                Row{"21.0.1+12-LTS-jvmci-23.1-b19", 21},
    Row{"21.0.5+8-b631.28", 21},             Row{"21-internal-adhoc.user.jdk", 21},
    Row{"21+-foo.bar", 21},                  Row{"11.0.20.16+8-GA", 11},
    Row{"17.0", 17},                         Row{"2147483647.0.1", 2147483647},
    Row{"1", 1},                             Row{"1.8", 8},
    Row{"1.8.0", 8},                         Row{"1.4.2_19", 4},
    Row{"1.6.0_45", 6},                      Row{"1.7.0_05-icedtea", 7},
    Row{"1.8.0_391", 8},                     Row{"1.8.0_391-b13", 8},
    Row{"1.8.0.212", 8},                     Row{"1.8.0_40-ea-b15", 8},
    Row{"1.8.0-internal", 8},                Row{"1.8.0_272-202009071040-b05", 8},
    Row{"1.8.0_292-8u292-b10-0ubuntu1~20.04-b10", 8},
    Row{"1.8.0_265-b01_openj9-0.21.0", 8},   Row{"8u391", 8},
    Row{"8u391-b13", 8},                     Row{"7u80", 7}));
// clang-format on

TEST_P(VersionTextTest, IsReadAndKept) {
  const Version version = V(GetParam().text);
  EXPECT_EQ(version.Feature(), GetParam().feature);
  EXPECT_EQ(version.ToString(), GetParam().text);
  EXPECT_TRUE(version.Fits(GetParam().text));
  EXPECT_TRUE(version.Fits(std::to_string(GetParam().feature)));
  EXPECT_FALSE(version.Fits("3"));
}

class VersionRefusedTest : public testing::TestWithParam<std::string> {};

INSTANTIATE_TEST_SUITE_P(Texts, VersionRefusedTest,
                         testing::Values("", " ", "abc", "0", "0.9", "-1", "017", "17.", ".17", "17..1", "17.01", "17 ",
                                         "17-", "17-ea-", "17+", "17+06", "17+x", "17-ea+-x", "17--x", "17-a.b", "17.x",
                                         "17-ea~1", "17+6+7", "2147483648", "17+2147483648", "1.", "1.x", "1.8.0_",
                                         "1.8.0_x", "1.8.0.1_2", "1.8_391", "1.8.0_391 ", "1.8.0_391-", "1.8.0_391x",
                                         "1.8.0_99999999999", "u391", "0u1", "8u", "8ux", "8u391b13",
                                         std::string("17\0", 3), "17\n", "\xFF\xFE", "\u0661\u0667"));

TEST_P(VersionRefusedTest, IsRefusedWithItsText) {
  EXPECT_EQ(Version::TryParse(GetParam()), std::nullopt);
  EXPECT_EQ(FailureOf(GetParam()), std::string("\"" + GetParam() + "\" is not a version of Java").c_str());
}

TEST(VersionTest, OfALongTextThatIsNoneTheBeginningIsShown) {
  EXPECT_EQ(FailureOf(std::string(1000, 'x')), "\"" + std::string(80, 'x') + "...\" is not a version of Java");
  EXPECT_EQ(FailureOf(std::string(80, 'x')), "\"" + std::string(80, 'x') + "\" is not a version of Java");
}

TEST(VersionTest, LongTextsAreReadWhole) {
  const std::string text = "17." + std::string(20000, '0') + "1";
  EXPECT_EQ(Version::TryParse(text), std::nullopt);
  std::string many = "17";
  for (int i = 0; i < 10000; ++i) many += ".0.1";
  EXPECT_TRUE(V(many) > V("17.0.1"));
  EXPECT_TRUE(V("17-" + std::string(10000, '9')) > V("17-" + std::string(9999, '9')));
}

// In Java's order, which java.lang.Runtime.Version of 17 and 25 confirmed; those of one line are equal.
const std::vector<std::vector<const char*>> Ordered = {
    {"1.4.2_19"},
    {"7u80", "1.7.0_80"},
    {"1.8.0-ea"},
    {"8", "1.8", "1.8.0", "8.0.0", "8.0"},
    {"1.8.0_05", "1.8.0_5", "8u5", "8.0.5"},
    {"1.8.0_391-ea-b15", "8.0.391-ea+15"},
    {"8u391", "1.8.0_391", "1.8.0.391", "8.0.391"},
    {"1.8.0_391-b05", "1.8.0_391-b5", "8.0.391+5"},
    {"1.8.0_391-b13"},
    {"9-2"},
    {"9-10", "9-010"},
    {"9-10a"},
    {"9-Debian"},
    {"9-ea"},
    {"9-ea+1"},
    {"9-ea+10"},
    {"9-ea+10-x"},
    {"9-internal"},
    {"9"},
    {"9+-x"},
    {"9+0"},
    {"9+181"},
    {"9+181-LTS"},
    {"9.0.1"},
    {"9.0.4"},
    {"9.0.4.0.1"},
    {"9.0.4.1"},
    {"9.0.10"},
    {"10"},
    {"25-ea+40"},
    {"25+1"},
    {"25.0.1"},
};

TEST(VersionTest, IsOrderedAsJavaDoes) {
  for (std::size_t i = 0; i < Ordered.size(); ++i) {
    for (std::size_t j = 0; j < Ordered.size(); ++j) {
      for (const char* a : Ordered[i]) {
        for (const char* b : Ordered[j]) {
          SCOPED_TRACE(std::string(a) + " and " + b);
          EXPECT_EQ(V(a).Compare(V(b)), i < j ? -1 : i > j ? 1 : 0);
          EXPECT_EQ(V(a) == V(b), i == j);
          EXPECT_EQ(V(a) != V(b), i != j);
          EXPECT_EQ(V(a) < V(b), i < j);
          EXPECT_EQ(V(a) <= V(b), i <= j);
          EXPECT_EQ(V(a) > V(b), i > j);
          EXPECT_EQ(V(a) >= V(b), i >= j);
        }
      }
    }
  }
}

TEST(VersionTest, FitsWhatIsLessExact) {
  const Version version = V("17.0.15+6-Debian-1");
  for (const char* wanted : {"17", "17.0", "17.0.15", "17.0.15.0", "17.0.15+6", "17.0.15+6-Debian-1"}) {
    EXPECT_TRUE(version.Fits(wanted)) << wanted;
  }
  for (const char* wanted :
       {"1", "7", "11", "18", "17.1", "17.0.1", "17.0.15.1", "17-ea", "17.0.15+7", "17.0.15+6-x"}) {
    EXPECT_FALSE(version.Fits(wanted)) << wanted;
  }
  EXPECT_TRUE(V("17").Fits("17.0"));
  EXPECT_TRUE(V("17").Fits("17.0.0"));
  EXPECT_TRUE(V("17-007").Fits("17-7"));
  EXPECT_FALSE(V("17-7").Fits("17-70"));
  EXPECT_TRUE(V("25-ea+3").Fits("25-ea"));
  EXPECT_FALSE(V("25").Fits("25-ea"));
  EXPECT_TRUE(V("1.8.0_391-b13").Fits("1.8"));
  EXPECT_TRUE(V("1.8.0_391-b13").Fits("8u391"));
  EXPECT_FALSE(V("1.8.0_391-b13").Fits("8u39"));
}

TEST(VersionTest, FitsNothingThatIsNoVersion) {
  EXPECT_THROW(V("17").Fits("17.x"), Misuse);
  EXPECT_THROW(V("17").Fits(""), Misuse);
}

}  // namespace
}  // namespace tests
