// The array that JNI takes.
#include <torvan/jni/options/AbortHook.h>
#include <torvan/jni/options/ClassPath.h>
#include <torvan/jni/options/CustomOption.h>
#include <torvan/jni/options/ExitHook.h>
#include <torvan/jni/options/Options.h>
#include <torvan/jni/options/SystemProperty.h>
#include <torvan/jni/options/Verbose.h>
#include <torvan/jni/options/VfprintfHook.h>

#include <map>
#include <ostream>

#include "fakes/Allocations.h"
#include "jni/options/OptionSupport.h"

namespace tests {

using namespace torvan::jni;
using namespace torvan::jni::options;

namespace {

// The text that a set with this one custom option passes to a VM.
std::string Passed(const RX::UniChar* text) {
  COptions options;
  options.AddOption(CCustomOption(text));
  JavaVMOption* const array = options.CreateJniOptions();
  const std::string passed = array[0].optionString;
  options.DestroyJniOptions(array);
  return passed;
}

TEST(OptionsJniTest, HasOneRecordForEachOptionInOrder) {
  COptions options;
  options.AddOption(CCustomOption(RX_TEXT("-Xmx64m")));
  options.AddOption(CVerbose(1));
  options.AddOption(CAbortHook(OnAbort));
  options.AddOption(CExitHook(OnExit));
  options.AddOption(CVfprintfHook(OnPrint));
  options.AddOption(CSystemProperty(CSystemProperty::UserDir, RX_TEXT("C:\\work")));
  options.AddOption(CVerbose(1));
  JavaVMOption* const array = options.CreateJniOptions();
  const struct {
    const char* text;
    void* extraInfo;
  } expected[] = {{"-Xmx64m", nullptr},
                  {"-verbose:class", nullptr},
                  {"abort", reinterpret_cast<void*>(OnAbort)},
                  {"exit", reinterpret_cast<void*>(OnExit)},
                  {"vfprintf", reinterpret_cast<void*>(OnPrint)},
                  {"-Duser.dir=C:\\work", nullptr},
                  {"-verbose:class", nullptr}};
  for (unsigned int i = 0; i < options.GetOptionCount(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_STREQ(array[i].optionString, expected[i].text);
    EXPECT_EQ(array[i].extraInfo, expected[i].extraInfo);
  }
  options.DestroyJniOptions(array);
}

TEST(OptionsJniTest, SameOptionAddedTwiceHasTwoRecords) {
  COptions options;
  options.AddOption(CVerbose(2));
  options.AddOption(CVerbose(2));
  JavaVMOption* const array = options.CreateJniOptions();
  EXPECT_STREQ(array[0].optionString, "-verbose:gc");
  EXPECT_STREQ(array[1].optionString, "-verbose:gc");
  EXPECT_NE(array[0].optionString, array[1].optionString);
  options.DestroyJniOptions(array);
}

TEST(OptionsJniTest, TextIsUtf8) {
  EXPECT_EQ(Passed(RX_TEXT("-Da=C:\\\u00DCbung\\\u20AC")),
            "-Da=C:\\\xC3\x9C"
            "bung\\\xE2\x82\xAC");
  EXPECT_EQ(Passed(RX_TEXT("\U0001F600.jar")), "\xF0\x9F\x98\x80.jar");
}

TEST(OptionsJniTest, EmptyClassPathPassesAnEmptyText) {
  COptions options;
  options.AddOption(CClassPath());
  JavaVMOption* const array = options.CreateJniOptions();
  EXPECT_STREQ(array[0].optionString, "");
  options.DestroyJniOptions(array);
}

TEST(OptionsJniTest, ArrayAndTextsAreBlocksOfTheRootAllocatorOfTheirExactSizes) {
  Script script;
  COptions options;
  options.AddOption(CScriptedOption(script));
  options.AddOption(CScriptedOption(script));
  Allocations allocations;
  JavaVMOption* const array = options.CreateJniOptions();
  EXPECT_EQ(allocations.Live(), 3u);
  EXPECT_EQ(allocations.Taken()[0].address, array);
  EXPECT_EQ(allocations.Taken()[0].size, 2 * 16u);
  // A block freed earlier may have had a text's address, so the last block at that address is the text.
  std::map<const void*, std::size_t> sizes;
  for (const Allocations::Block& block : allocations.Taken()) sizes[block.address] = block.size;
  EXPECT_EQ(sizes[array[0].optionString], sizeof("text"));
  EXPECT_EQ(sizes[array[1].optionString], sizeof("text"));
  options.DestroyJniOptions(array);
  EXPECT_EQ(allocations.Live(), 0u);
}

TEST(OptionsJniTest, AsksEachOptionTwiceForItsTextAndThenForItsExtraInformation) {
  std::vector<std::string> log;
  Script first, second;
  first.name = "first";
  second.name = "second";
  first.log = second.log = &log;
  COptions options;
  options.AddOption(CScriptedOption(first));
  options.AddOption(CScriptedOption(second));
  EXPECT_TRUE(log.empty());
  JavaVMOption* const array = options.CreateJniOptions();
  EXPECT_EQ(log,
            (std::vector<std::string>{"GetOptionString(first)", "GetOptionString(first)", "GetExtraInfo(first)",
                                      "GetOptionString(second)", "GetOptionString(second)", "GetExtraInfo(second)"}));
  options.DestroyJniOptions(array);
  EXPECT_EQ(log.size(), 6u);
}

struct Answers {
  const char* name;
  const char* first;
  const char* second;
  const char* passed;
};
void PrintTo(const Answers& row, std::ostream* out) { *out << row.name; }

class OptionsJniSecondAnswerTest : public ::testing::TestWithParam<Answers> {};

TEST_P(OptionsJniSecondAnswerTest, IsPassedAsFarAsItFits) {
  Script script;
  script.text = [](int time) { return time == 1 ? GetParam().first : GetParam().second; };
  COptions options;
  options.AddOption(CScriptedOption(script));
  JavaVMOption* const array = options.CreateJniOptions();
  EXPECT_STREQ(array[0].optionString, GetParam().passed);
  options.DestroyJniOptions(array);
}

INSTANTIATE_TEST_SUITE_P(Lengths, OptionsJniSecondAnswerTest,
                         ::testing::Values(Answers{"Same", "-Xa", "-Xb", "-Xb"},            //
                                           Answers{"Shorter", "-Xabc", "-X", "-X"},         //
                                           Answers{"Longer", "-Xa", "-Xabcdefgh", "-Xa"},   //
                                           Answers{"NotFittingAnything", "", "-Xabc", ""},  //
                                           Answers{"CutAtACharacter", "-Xa", "\xC3\xA4\xC3\xB6", "\xC3\xA4"}),
                         [](const auto& row) { return row.param.name; });

TEST(OptionsJniTest, ExtraInformationIsNeverReleased) {
  Script script;
  int information = 42;
  script.extraInfo = [&]() -> void* { return &information; };
  COptions options;
  options.AddOption(CScriptedOption(script));
  JavaVMOption* const array = options.CreateJniOptions();
  EXPECT_EQ(array[0].extraInfo, &information);
  options.DestroyJniOptions(array);
  EXPECT_EQ(information, 42);
}

TEST(OptionsJniTest, EmptySetHasAnArrayWithRoomForOneRecord) {
  const COptions options;
  Allocations allocations;
  JavaVMOption* const array = options.CreateJniOptions();
  ASSERT_NE(array, nullptr);
  ASSERT_EQ(allocations.Made(), 1);
  EXPECT_GE(allocations.Taken()[0].size, 16u);
  EXPECT_EQ(array[0].optionString, nullptr);
  EXPECT_EQ(array[0].extraInfo, nullptr);
  options.DestroyJniOptions(array);
  EXPECT_EQ(allocations.Live(), 0u);
}

TEST(OptionsJniTest, DestroyingNullDoesNothing) {
  COptions options;
  options.AddOption(CVerbose(1));
  options.DestroyJniOptions(nullptr);
  EXPECT_EQ(options.GetOptionCount(), 1u);
}

COptions TwoOptions() {
  COptions options;
  options.AddOption(CVerbose(1));
  options.AddOption(CVerbose(2));
  return options;
}

TEST(OptionsJniTest, DestroyingLetsARecordWithoutATextPass) {
  COptions options = TwoOptions();
  Allocations allocations;
  JavaVMOption* const array = options.CreateJniOptions();
  RX_free(array[0].optionString);
  array[0].optionString = nullptr;
  options.DestroyJniOptions(array);
  EXPECT_EQ(allocations.Live(), 0u);
}

TEST(OptionsJniTest, DestroyingReleasesAsManyTextsAsTheSetHasOptionsNow) {
  COptions options = TwoOptions();
  Allocations allocations;
  JavaVMOption* const array = options.CreateJniOptions();
  char* const second = array[1].optionString;
  options.RemoveOption(CVerbose(2));
  options.DestroyJniOptions(array);
  EXPECT_EQ(allocations.Live(), 1u);
  EXPECT_STREQ(second, "-verbose:gc");
  RX_free(second);
}

}  // namespace
}  // namespace tests
