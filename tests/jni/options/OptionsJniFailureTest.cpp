// The array that JNI takes, when memory runs out or an option throws.
#include <mirel/base/IllegalArgumentException.h>
#include <mirel/base/MemoryException.h>
#include <torvan/jni/options/ClassPath.h>
#include <torvan/jni/options/CustomOption.h>
#include <torvan/jni/options/Options.h>
#include <torvan/jni/options/Verbose.h>

#include <ostream>

#include "fakes/Allocations.h"
#include "fakes/Failure.h"
#include "jni/options/OptionSupport.h"

namespace tests {

using namespace torvan::jni;
using namespace torvan::jni::options;

namespace {

using mirel::base::CIllegalArgumentException;
using mirel::base::CMemoryException;

std::vector<unsigned char> BytesOf(const void* block, std::size_t size) {
  const auto* bytes = static_cast<const unsigned char*>(block);
  return {bytes, bytes + size};
}

// The array at the moment when an option's text is first asked for.
class OptionsJniFailureFirstRecordTest : public ::testing::TestWithParam<unsigned int> {};

TEST_P(OptionsJniFailureFirstRecordTest, IsTheLowByteOfTheCountUntilItIsFilledAndTheOthersAreNull) {
  const unsigned int count = GetParam();
  Script script;
  Allocations allocations;
  std::vector<unsigned char> seen;
  script.text = [&](int time) {
    if (time == 1) seen = BytesOf(allocations.Taken()[0].address, 16 * count);
    return std::string("text");
  };
  COptions options;
  for (unsigned int i = 0; i < count; ++i) options.AddOption(CScriptedOption(script));
  allocations.Fail(0);
  JavaVMOption* const array = options.CreateJniOptions();

  std::vector<unsigned char> expected(16 * count, 0);
  for (int i = 0; i < 16; ++i) expected[static_cast<std::size_t>(i)] = static_cast<unsigned char>(count % 256);
  EXPECT_EQ(seen, expected);
  EXPECT_STREQ(array[0].optionString, "text");
  EXPECT_EQ(array[0].extraInfo, nullptr);
  options.DestroyJniOptions(array);
}

INSTANTIATE_TEST_SUITE_P(Count, OptionsJniFailureFirstRecordTest, ::testing::Values(1u, 3u, 255u, 256u, 259u));

TEST(OptionsJniFailureTest, OtherExceptionOfTheFirstOptionLeavesTheArrayAsItWas) {
  Script script;
  script.text = [](int) -> std::string { throw CIllegalArgumentException("host/Option", 7, "No text.", nullptr); };
  COptions options;
  options.AddOption(CScriptedOption(script));
  options.AddOption(CVerbose(1));
  Allocations allocations;
  EXPECT_EQ(FailureOf([&] { options.CreateJniOptions(); }),
            Throws<CIllegalArgumentException>("host/Option", 7, "No text."));
  ASSERT_EQ(allocations.Live(), 1u);
  void* const array = allocations.Taken()[0].address;
  std::vector<unsigned char> expected(16, 2);
  expected.insert(expected.end(), 16, 0);
  EXPECT_EQ(BytesOf(array, 32), expected);
  RX_free(array);
}

TEST(OptionsJniFailureTest, OtherExceptionOfALaterOptionPassesWithoutAnyRelease) {
  Script script;
  script.text = [](int time) -> std::string {
    if (time == 2) throw CIllegalArgumentException("host/Option", 7, "No text.", nullptr);
    return "text";
  };
  COptions options;
  options.AddOption(CVerbose(1));
  options.AddOption(CScriptedOption(script));
  Allocations allocations;
  EXPECT_EQ(FailureOf([&] { options.CreateJniOptions(); }),
            Throws<CIllegalArgumentException>("host/Option", 7, "No text."));
  EXPECT_EQ(allocations.Live(), 3u);
  auto* const array = static_cast<JavaVMOption*>(allocations.Taken()[0].address);
  EXPECT_STREQ(array[0].optionString, "-verbose:class");
  EXPECT_EQ(array[1].optionString, nullptr);
  RX_free(array[0].optionString);
  RX_free(allocations.Taken().back().address);
  RX_free(array);
  EXPECT_EQ(allocations.Live(), 0u);
}

TEST(OptionsJniFailureTest, WithoutMemoryForTheArrayItThrows) {
  COptions options;
  options.AddOption(CVerbose(1));
  const COptions empty;
  Allocations allocations;
  allocations.Fail(1);
  EXPECT_EQ(FailureOf([&] { options.CreateJniOptions(); }),
            Throws<CMemoryException>("jni/options/Options", 65, nullptr));
  allocations.Fail(1);
  EXPECT_EQ(FailureOf([&] { empty.CreateJniOptions(); }), Throws<CMemoryException>("jni/options/Options", 65, nullptr));
  EXPECT_EQ(allocations.Live(), 0u);
}

TEST(OptionsJniFailureTest, WithoutMemoryForATextItReleasesTheArrayAndReturnsItsPointer) {
  CClassPath classPath;
  classPath.AddPath(RX_TEXT("a.jar"));
  COptions options;
  options.AddOption(CCustomOption(RX_TEXT("-Xint")));
  options.AddOption(CVerbose(3));
  options.AddOption(classPath);

  JavaVMOption* array = nullptr;
  Failure failure;
  const int failures =
      FailEachAllocation([&] { failure = FailureOf([&] { array = options.CreateJniOptions(); }); },
                         [&](int n, const Allocations& allocations) {
                           EXPECT_EQ(allocations.Live(), 0u);
                           if (n == 1) {
                             EXPECT_EQ(failure, Throws<CMemoryException>("jni/options/Options", 65, nullptr));
                           } else {
                             EXPECT_EQ(failure, Failure());
                             EXPECT_EQ(array, allocations.Taken()[0].address);
                           }
                         });
  EXPECT_GE(failures, 1 + 3 * 3);  // the array; for each option two renderings and the text
  EXPECT_STREQ(array[0].optionString, "-Xint");
  EXPECT_STREQ(array[1].optionString, "-verbose:class,gc,jni");
  options.DestroyJniOptions(array);
}

// Where the option throws: at its first or second rendering, or at its extra information.
struct Place {
  const char* name;
  int rendering;
  bool atExtraInfo;
};
void PrintTo(const Place& place, std::ostream* out) { *out << place.name; }

class OptionsJniFailureMemoryTest : public ::testing::TestWithParam<std::tuple<Place, unsigned int>> {};

TEST_P(OptionsJniFailureMemoryTest, LosesNothing) {
  const auto& [place, index] = GetParam();
  Script script;
  script.text = [&place = place](int time) -> std::string {
    if (time == place.rendering) throw CMemoryException("host/Option", 7, nullptr, nullptr);
    return "text";
  };
  script.extraInfo = [&place = place]() -> void* {
    if (place.atExtraInfo) throw CMemoryException("host/Option", 8, nullptr, nullptr);
    return nullptr;
  };
  COptions options;
  for (unsigned int i = 0; i < 3; ++i) {
    if (i == index) {
      options.AddOption(CScriptedOption(script));
    } else {
      options.AddOption(CVerbose(1));
    }
  }
  Allocations allocations;
  JavaVMOption* array = nullptr;
  EXPECT_EQ(FailureOf([&] { array = options.CreateJniOptions(); }), Failure());
  EXPECT_EQ(array, allocations.Taken()[0].address);
  EXPECT_EQ(allocations.Live(), 0u);
}

INSTANTIATE_TEST_SUITE_P(
    Places, OptionsJniFailureMemoryTest,
    ::testing::Combine(::testing::Values(Place{"FirstRendering", 1, false}, Place{"SecondRendering", 2, false},
                                         Place{"ExtraInformation", 0, true}),
                       ::testing::Values(0u, 1u, 2u)),
    [](const auto& row) { return std::get<0>(row.param).name + std::to_string(std::get<1>(row.param)); });

}  // namespace
}  // namespace tests
