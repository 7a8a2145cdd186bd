#include <mirel/base/IllegalArgumentException.h>
#include <torvan/jni/options/Verbose.h>

#include <ostream>

#include "fakes/Failure.h"
#include "fakes/TextRoom.h"
#include "jni/options/OptionSupport.h"

namespace tests {

using namespace torvan::jni;
using namespace torvan::jni::options;

namespace {

struct Flags {
  const char* name;
  unsigned int flags;
  const char* text;
};
void PrintTo(const Flags& row, std::ostream* out) { *out << row.name; }

class VerboseTextTest : public ::testing::TestWithParam<Flags> {};

TEST_P(VerboseTextTest, IsMadeFromTheTwoLowestFlags) {
  const CVerbose option(GetParam().flags);
  EXPECT_EQ(option.GetFlags(), GetParam().flags);
  EXPECT_EQ(Text(option.GetOptionString()), GetParam().text);
  EXPECT_EQ(option.GetExtraInfo(), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Flags, VerboseTextTest,
                         ::testing::Values(Flags{"Classes", 1, "-verbose:class"},                      //
                                           Flags{"Collection", 2, "-verbose:gc"},                      //
                                           Flags{"BothBringJni", 3, "-verbose:class,gc,jni"},          //
                                           Flags{"ClassesAndUnknown", 5, "-verbose:class"},            //
                                           Flags{"CollectionAndUnknown", 6, "-verbose:gc"},            //
                                           Flags{"BothAndUnknown", 7, "-verbose:class,gc,jni"},        //
                                           Flags{"ClassesAndHighest", 0x80000001u, "-verbose:class"},  //
                                           Flags{"All", 0xFFFFFFFFu, "-verbose:class,gc,jni"}),
                         [](const auto& row) { return row.param.name; });

class VerboseFlagsTest : public ::testing::TestWithParam<unsigned int> {};

TEST_P(VerboseFlagsTest, NeedOneOfTheTwoLowest) {
  EXPECT_EQ(FailureOf([] { CVerbose option(GetParam()); }),
            Throws<mirel::base::CIllegalArgumentException>("jni/options/Verbose", 41, "Invalid verbose flags."));
}

INSTANTIATE_TEST_SUITE_P(Without, VerboseFlagsTest, ::testing::Values(0u, 4u, 8u, 0x80000000u, 0xFFFFFFFCu));

TEST(VerboseTest, EqualsOneWithTheSameFlags) {
  const CVerbose option(1);
  const CVerbose equal(1);
  EXPECT_TRUE(option.Equals(&equal));
  EXPECT_TRUE(equal.Equals(&option));
}

TEST(VerboseTest, ComparesFlagsWithoutMeaningToo) {
  const CVerbose option(1);
  const CVerbose sameText(5);
  EXPECT_FALSE(option.Equals(&sameText));
  EXPECT_FALSE(sameText.Equals(&option));
}

TEST(VerboseTest, RenderingStartsWithRoomFor32Units) {
  const CVerbose option(1);
  EXPECT_EQ(FirstRoomOf([&] { option.GetOptionString(); }), RoomForUnits(32));
}

TEST(VerboseTest, CopiesAsAValue) { ExpectCopiesAsAValue(CVerbose(1), CVerbose(2)); }

}  // namespace
}  // namespace tests
