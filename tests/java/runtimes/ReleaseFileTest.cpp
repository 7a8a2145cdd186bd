#include "java/runtimes/ReleaseFile.h"

#include <gtest/gtest.h>

#include <string>

#include "java/runtimes/RealReleases.h"
#include "java/runtimes/WholeReleases.h"

namespace tests {
namespace {

using namespace torvan::java;
using namespace torvan::java::detail;

std::string VersionIn(const std::string& file) {
  const Release release = ReadRelease(file);
  return release.version ? release.version->ToString() : "none";
}

class ReleaseFileRealTest : public testing::TestWithParam<RealRelease> {};

INSTANTIATE_TEST_SUITE_P(Files, ReleaseFileRealTest, testing::ValuesIn(RealReleases));

TEST_P(ReleaseFileRealTest, TellsVersionAndVendor) {
  const RealRelease& row = GetParam();
  const Release release = ReadRelease(row.File());
  ASSERT_TRUE(release.version);
  EXPECT_EQ(release.version->ToString(), row.expected);
  EXPECT_EQ(release.version->Feature(), row.feature);
  EXPECT_EQ(release.vendor, row.implementor == nullptr ? "" : row.implementor);
  EXPECT_EQ(release.versionText, row.version);
}

std::string Replaced(std::string text, const std::string& what, const std::string& by) {
  for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size()) {
    text.replace(at, what.size(), by);
  }
  return text;
}

class ReleaseFileWholeTest : public testing::TestWithParam<WholeRelease> {};

INSTANTIATE_TEST_SUITE_P(Files, ReleaseFileWholeTest, testing::ValuesIn(WholeReleases));

// However its lines end, with a mark of UTF-8 or without, and with values in quotes or bare.
TEST_P(ReleaseFileWholeTest, TellsWhatCounts) {
  const std::string file = GetParam().file;
  for (const std::string& form : {file, Replaced(file, "\n", "\r\n"), "\xEF\xBB\xBF" + file, Replaced(file, "\"", ""),
                                  file.substr(0, file.size() - 1)}) {
    const Release release = ReadRelease(form);
    ASSERT_TRUE(release.version) << form;
    EXPECT_EQ(release.version->ToString(), GetParam().version);
    EXPECT_EQ(release.vendor, GetParam().vendor);
    EXPECT_EQ(release.libc, GetParam().libc);
  }
}

TEST(ReleaseFileTest, AnEmptyFileTellsNothing) {
  for (const char* file : {"", "\n", "\r\n\r\n", "=", "JAVA_VERSION", "JAVA_VERSION=", "JAVA_VERSION=\"\""}) {
    const Release release = ReadRelease(file);
    EXPECT_EQ(release.version, std::nullopt) << file;
    EXPECT_EQ(release.versionText, "") << file;
    EXPECT_EQ(release.vendor, "") << file;
  }
}

TEST(ReleaseFileTest, ValuesMayBeWrittenInSeveralWays) {
  for (const char* file : {"JAVA_VERSION=\"17\"", "JAVA_VERSION=17", "JAVA_VERSION='17'", "JAVA_VERSION=\"17\"\r\n",
                           "  JAVA_VERSION = \"17\"  \n", "\xEF\xBB\xBFJAVA_VERSION=\"17\"\n",
                           "X=1\n\n# no key\nJAVA_VERSION=\"17\"\nY=2", "JAVA_VERSION=\"11\"\nJAVA_VERSION=\"17\""}) {
    EXPECT_EQ(VersionIn(file), "17") << file;
  }
}

TEST(ReleaseFileTest, OtherKeysAreOthers) {
  EXPECT_EQ(VersionIn("JAVA_VERSION_DATE=\"2021-01-01\"\n"), "none");
  EXPECT_EQ(VersionIn("XJAVA_VERSION=\"17\"\n"), "none");
  EXPECT_EQ(VersionIn("java_version=\"17\"\n"), "none");
  EXPECT_EQ(VersionIn("MODULES=\"JAVA_VERSION=17\"\n"), "none");
}

TEST(ReleaseFileTest, HalfAPairOfQuotesIsPartOfTheValue) {
  EXPECT_EQ(VersionIn("JAVA_VERSION=\"17\n"), "none");
  EXPECT_EQ(VersionIn("JAVA_VERSION=17\"\n"), "none");
  EXPECT_EQ(VersionIn("JAVA_VERSION=\"\n"), "none");
}

TEST(ReleaseFileTest, TheVersionOfTheRuntimeCountsWhenTheNumbersAreTheSame) {
  EXPECT_EQ(VersionIn("JAVA_VERSION=\"25\"\nJAVA_RUNTIME_VERSION=\"25-ea+12\"\n"), "25-ea+12");
  EXPECT_EQ(VersionIn("JAVA_RUNTIME_VERSION=\"17.0.9+9\"\nJAVA_VERSION=\"17.0.9\"\n"), "17.0.9+9");
  EXPECT_EQ(VersionIn("JAVA_VERSION=\"8.0.391\"\nJAVA_RUNTIME_VERSION=\"1.8.0_391-b13\"\n"), "1.8.0_391-b13");
  EXPECT_EQ(VersionIn("JAVA_VERSION=\"17.0.9\"\nJAVA_RUNTIME_VERSION=\"17.0.10+1\"\n"), "17.0.9");
  EXPECT_EQ(VersionIn("JAVA_VERSION=\"17.0.9\"\nJAVA_RUNTIME_VERSION=\"pxa6480sr7fp20 (SR7)\"\n"), "17.0.9");
  EXPECT_EQ(VersionIn("JAVA_RUNTIME_VERSION=\"17.0.9+9\"\n"), "17.0.9+9");
  EXPECT_EQ(VersionIn("JAVA_VERSION=\"x\"\nJAVA_RUNTIME_VERSION=\"17.0.9+9\"\n"), "17.0.9+9");
}

TEST(ReleaseFileTest, AVersionThatIsNoneOfJavaIsToldAsText) {
  const Release release = ReadRelease("JAVA_VERSION=\"seventeen\"\n");
  EXPECT_EQ(release.version, std::nullopt);
  EXPECT_EQ(release.versionText, "seventeen");
}

TEST(ReleaseFileTest, AVersionOfControlCharactersIsNone) {
  const Release release = ReadRelease("JAVA_VERSION=\x01\nJAVA_RUNTIME_VERSION=17.0.9+9\n");
  EXPECT_EQ(release.versionText, "17.0.9+9");
  EXPECT_EQ(ReadRelease("JAVA_VERSION=\x01\n").versionText, "");
}

TEST(ReleaseFileTest, TextsAreFitToBeShown) {
  const auto vendorOf = [](const std::string& vendor) {
    return ReadRelease("IMPLEMENTOR=\"" + vendor + "\"\n").vendor;
  };
  EXPECT_EQ(vendorOf("Soci\u00E9t\u00E9 \u4E2D \U0001F600"), "Soci\u00E9t\u00E9 \u4E2D \U0001F600");
  EXPECT_EQ(vendorOf("\x1B[31mred\x07\x7F\t!"), "[31mred!");
  EXPECT_EQ(vendorOf("\u0085a\u009Fb"), "ab");  // control characters beyond ASCII
  EXPECT_EQ(vendorOf(std::string("a\0b", 3)), "ab");
  EXPECT_EQ(vendorOf("Soci\xE9t\xE9"), "Soci?t?");
  EXPECT_EQ(vendorOf("\xC0\xAF|\xE0\x80\xAF|\xF0\x80\x80\xAF"), "??|???|????");            // overlong
  EXPECT_EQ(vendorOf("\xED\xA0\x80|\xF4\x90\x80\x80|\xF5\x80\x80\x80"), "???|????|????");  // no characters
  EXPECT_EQ(ReadRelease("IMPLEMENTOR=x\xC2").vendor, "x?");
  EXPECT_EQ(vendorOf("\xE4\xB8"), "??");  // cut off
  EXPECT_EQ(vendorOf(std::string(10000, 'x')), std::string(200, 'x'));
  EXPECT_EQ(ReadRelease("JAVA_VERSION=\"" + std::string(10000, 'x') + "\"").versionText, std::string(200, 'x'));
}

}  // namespace
}  // namespace tests
