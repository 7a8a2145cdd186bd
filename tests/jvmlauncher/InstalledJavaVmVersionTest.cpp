// How versions are compared.

#include <gtest/gtest.h>
#include <mirel/base/IllegalArgumentException.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "fakes/Failure.h"
#include "fakes/WideText.h"
#include "jvmlauncher/InstalledJavaVm.h"

namespace tests {

using mirel::base::CIllegalArgumentException;
using torvan::jvmlauncher::CompareNumbersBetweenDots;
using torvan::jvmlauncher::InstalledJavaVm;

namespace {

int Compare(const std::string& a, const std::string& b) {
  return CompareNumbersBetweenDots(Widen(a).c_str(), Widen(b).c_str());
}

struct VersionRow {
  const char* name;
  const char* a;
  const char* b;
  int result;
};

class InstalledJavaVmVersionComparisonTest : public testing::TestWithParam<VersionRow> {};

TEST_P(InstalledJavaVmVersionComparisonTest, IsTheSameInBothDirections) {
  const VersionRow& row = GetParam();
  EXPECT_EQ(Compare(row.a, row.b), row.result);
  EXPECT_EQ(Compare(row.b, row.a), -row.result);
}

const VersionRow VersionRows[] = {
    {"TheSame", "1.6.0", "1.6.0", 0},
    {"UpdateNumbersAreNotLookedAt", "1.6.0_10", "1.6.0_20", 0},
    {"AnUpdateNumberEqualsNone", "1.6.0_10", "1.6.0", 0},
    {"FewerNumbersAreLess", "1.6", "1.6.0", -1},
    {"OneNumberIsLessThanTwo", "1", "1.0", -1},
    {"NumbersAndNotTexts", "1.10", "1.9", 1},
    {"TheFirstDifferenceDecides", "1.9.9", "2.0.0", -1},
    {"ADifferenceBeforeALength", "1.7", "1.6.0", 1},
    {"NewNumbering", "17.0.9", "1.8.0_392", 1},
    {"LeadingZeros", "1.06", "1.6", 0},
    {"WhatFollowsTheDigitsIsNotLookedAt", "9-ea.1", "9.1", 0},
    {"NoDigitsAreZero", "1.x", "1.0", 0},
    {"NoDigitsAfterTheDot", "1.", "1.0", 0},
    {"NothingIsZero", "", "0", 0},
    {"NothingIsLessThanOne", "", "1", -1},
    {"TwoDots", "1..5", "1.0.5", 0},
    {"ATrailingDotIsOneNumberMore", "1.6.", "1.6", 1},
    {"BlanksBeforeANumberAreNotLookedAt", "1. \t6", "1.6", 0},
    {"APlusSignIsNotLookedAt", "+1.+6", "1.6", 0},
    {"AMinusSignMakesANumberNegative", "1.-6", "1.0", -1},
    {"ABlankAfterASignEndsTheNumber", "1.- 6", "1.0", 0},
    {"NumbersOutOfRangeAreTheLargest", "99999999999", "2147483647", 0},
};

INSTANTIATE_TEST_SUITE_P(Versions, InstalledJavaVmVersionComparisonTest, testing::ValuesIn(VersionRows),
                         [](const auto& row) { return std::string(row.param.name); });

// The rule, spelt out slowly: split at the dots, read a 32-bit number at the beginning of each part, compare as lists.
std::vector<long long> NumbersOf(const std::string& version) {
  std::vector<long long> numbers;
  for (std::size_t start = 0; start != std::string::npos;) {
    const std::size_t dot = version.find('.', start);
    const std::string part = version.substr(start, dot == std::string::npos ? dot : dot - start);
    numbers.push_back(std::clamp(std::strtoll(part.c_str(), nullptr, 10), -2147483648LL, 2147483647LL));
    start = dot == std::string::npos ? dot : dot + 1;
  }
  return numbers;
}

int SlowCompare(const std::string& a, const std::string& b) {
  const auto left = NumbersOf(a);
  const auto right = NumbersOf(b);
  return left < right ? -1 : right < left ? 1 : 0;
}

TEST(InstalledJavaVmVersionTest, AgreesWithASlowReferenceOnRandomTexts) {
  std::mt19937 random(20240607);
  const std::string units = "000111222789...._ae- +";
  const auto make = [&] {
    std::string text(random() % 9, ' ');
    for (char& unit : text) unit = units[random() % units.size()];
    return text;
  };
  int outcomes[3] = {};
  for (int i = 0; i < 200000; ++i) {
    const std::string a = make();
    // Half of the pairs share a prefix; otherwise most would differ in the first number.
    const std::string b = random() % 2 != 0 ? make() : a.substr(0, random() % (a.size() + 1)) + make();
    const int expected = SlowCompare(a, b);
    ASSERT_EQ(Compare(a, b), expected) << "\"" << a << "\" and \"" << b << "\"";
    ++outcomes[expected + 1];
  }
  EXPECT_GT(*std::min_element(outcomes, outcomes + 3), 5000);
}

struct CompatibilityRow {
  const char* name;
  const char* installed;
  const char* requested;
  bool compatible;
};

class InstalledJavaVmVersionCompatibilityTest : public testing::TestWithParam<CompatibilityRow> {};

TEST_P(InstalledJavaVmVersionCompatibilityTest, MeansAtOrAboveTheRequest) {
  const InstalledJavaVm vm = {Widen(GetParam().installed).c_str(), RX_TEXT("home")};
  EXPECT_EQ(vm.IsCompatibleWith(Widen(GetParam().requested).c_str()), GetParam().compatible);
}

const CompatibilityRow CompatibilityRows[] = {
    {"AnUpdateOfTheRequest", "1.5.0_06", "1.5", true},
    {"ANewerRelease", "1.6.0_10", "1.5", true},
    {"FewerNumbersThanRequested", "1.6", "1.6.0", false},
    {"TheVeryVersion", "1.6.0", "1.6.0", true},
    {"AnOlderUpdateThanRequested", "1.6.0_10", "1.6.0_20", true},
    {"AnOlderRelease", "1.4.2", "1.5", false},
    {"ANewNumbering", "17", "1.8", true},
};

INSTANTIATE_TEST_SUITE_P(Versions, InstalledJavaVmVersionCompatibilityTest, testing::ValuesIn(CompatibilityRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(InstalledJavaVmVersionTest, ARequestWithoutTextIsRefused) {
  const InstalledJavaVm vm = {RX_TEXT("1.6.0"), RX_TEXT("home")};
  const auto expected = Throws<CIllegalArgumentException>("jvmlauncher/InstalledJavaVm", 133, "Invalid vm version.");
  EXPECT_EQ(FailureOf([&] { vm.IsCompatibleWith(nullptr); }), expected);
  EXPECT_EQ(FailureOf([&] { vm.IsCompatibleWith(RX_TEXT("")); }), expected);
}

}  // namespace
}  // namespace tests
