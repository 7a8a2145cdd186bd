// The set of options.
#include <mirel/base/IllegalArgumentException.h>
#include <mirel/base/MemoryException.h>
#include <mirel/util/NoSuchElementException.h>
#include <torvan/jni/options/ClassPath.h>
#include <torvan/jni/options/CustomOption.h>
#include <torvan/jni/options/Options.h>
#include <torvan/jni/options/Verbose.h>

#include <ostream>
#include <type_traits>

#include "fakes/Allocations.h"
#include "fakes/DebugOut.h"
#include "fakes/Failure.h"
#include "jni/options/OptionSupport.h"

namespace tests {

using namespace torvan::jni;
using namespace torvan::jni::options;

namespace {

using mirel::base::CIllegalArgumentException;

std::vector<std::string> TextsOf(const COptions& options) {
  std::vector<std::string> texts;
  for (unsigned int i = 0; i < options.GetOptionCount(); ++i) {
    texts.push_back(Text(options.GetOptionAt(i).GetOptionString()));
  }
  return texts;
}

using Texts = std::vector<std::string>;

TEST(OptionsTest, IsAVectorOfObjectsWithoutVirtualOperations) {
  EXPECT_TRUE((std::is_base_of_v<mirel::util::CObjectVector, COptions>));
  EXPECT_FALSE(std::is_polymorphic_v<COptions>);
  EXPECT_EQ(sizeof(COptions), sizeof(mirel::util::CObjectVector));
}

TEST(OptionsTest, StartsWithRoomForFiveOptionsAndGrowsByFive) {
  const CVerbose option(1);
  Allocations allocations;
  COptions options;
  EXPECT_EQ(allocations.Taken().back().size, 5 * sizeof(void*));
  allocations.Fail(0);
  for (int i = 0; i < 5; ++i) options.AddOption(option);
  EXPECT_EQ(allocations.Made(), 5);
  options.AddOption(option);
  EXPECT_EQ(allocations.Made(), 7);
  EXPECT_EQ(allocations.Taken().back().size, 10 * sizeof(void*));
}

TEST(OptionsTest, KeepsOptionsInTheOrderInWhichTheyWereAdded) {
  COptions options;
  EXPECT_EQ(options.GetOptionCount(), 0u);
  options.AddOption(CVerbose(2));
  options.AddOption(CCustomOption(RX_TEXT("-Xint")));
  options.AddOption(CVerbose(1));
  EXPECT_EQ(TextsOf(options), (Texts{"-verbose:gc", "-Xint", "-verbose:class"}));
}

TEST(OptionsTest, HoldsAClone) {
  CClassPath classPath;
  classPath.AddPath(RX_TEXT("a.jar"));
  COptions options;
  options.AddOption(classPath);
  EXPECT_NE(&options.GetOptionAt(0), &classPath);
  EXPECT_EQ(options.GetOptionAt(0).GetClass(), &CClassPath::m_classCClassPath);

  classPath.AddPath(RX_TEXT("b.jar"));
  EXPECT_EQ(TextsOf(options), Texts{std::string("-Djava.class.path=a.jar") + ListSeparator});
}

TEST(OptionsTest, SameOptionAddedTwiceIsHeldTwiceAndRemovedOnce) {
  const CCustomOption option(RX_TEXT("-Xint"));
  COptions options;
  options.AddOption(option);
  options.AddOption(CVerbose(1));
  options.AddOption(option);
  EXPECT_EQ(options.GetOptionCount(), 3u);

  options.RemoveOption(option);
  EXPECT_EQ(TextsOf(options), (Texts{"-verbose:class", "-Xint"}));
  options.RemoveOption(option);
  EXPECT_EQ(TextsOf(options), Texts{"-verbose:class"});
}

TEST(OptionsTest, RemovesByEqualityAndFreesTheMemory) {
  Allocations allocations;
  COptions options;
  const std::size_t empty = allocations.Live();
  options.AddOption(CCustomOption(RX_TEXT("-Xint")));
  options.RemoveOption(CCustomOption(RX_TEXT("-Xint")));
  EXPECT_EQ(options.GetOptionCount(), 0u);
  EXPECT_EQ(allocations.Live(), empty);
}

TEST(OptionsTest, RemovingWhatIsNotHeldDoesNothing) {
  DebugOut debugOut;
  COptions options;
  options.RemoveOption(CVerbose(1));
  options.AddOption(CVerbose(1));
  options.RemoveOption(CVerbose(5));
  options.RemoveOption(CCustomOption(RX_TEXT("-verbose:class")));
  EXPECT_EQ(TextsOf(options), Texts{"-verbose:class"});
  EXPECT_EQ(debugOut.Text(), "");
}

// The first comparison checks whether the option is there, the second finds it for removal.
class OptionsRemovalFailureTest : public ::testing::TestWithParam<int> {};

TEST_P(OptionsRemovalFailureTest, IsPrintedAndGoesNoFurther) {
  Script script;
  script.equals = [](int comparison) -> bool {
    if (comparison == GetParam()) throw CIllegalArgumentException("host/Option", 7, "Cannot be compared.", nullptr);
    return true;
  };
  const CScriptedOption option(script);
  COptions options;
  options.AddOption(option);
  options.AddOption(CVerbose(1));

  DebugOut debugOut;
  EXPECT_NO_THROW(options.RemoveOption(option));
  EXPECT_EQ(script.comparisons, GetParam());
  EXPECT_EQ(TextsOf(options), (Texts{"text", "-verbose:class"}));
  EXPECT_EQ(debugOut.Text(), "mirel::base::CIllegalArgumentException: Cannot be compared. at host/Option:7\n");
}

INSTANTIATE_TEST_SUITE_P(Comparison, OptionsRemovalFailureTest, ::testing::Values(1, 2));

TEST(OptionsTest, IndexPastTheEndIsRefused) {
  COptions options;
  options.AddOption(CVerbose(1));
  EXPECT_EQ(FailureOf([&] { options.GetOptionAt(1); }),
            Throws<mirel::util::CNoSuchElementException>("mirel/util/Vector", 175, nullptr));
}

TEST(OptionsTest, OptionThatCannotBeClonedIsRefused) {
  class COnce : public CVerbose {
   public:
    COnce() : CVerbose(1) {}
    CObject* Clone() const override { return nullptr; }
  };
  COptions options;
  EXPECT_EQ(FailureOf([&] { options.AddOption(COnce()); }),
            Throws<CIllegalArgumentException>("mirel/util/ObjectVector", AnyLine, "Invalid object."));
  EXPECT_EQ(options.GetOptionCount(), 0u);
}

TEST(OptionsTest, CopiesAreIndependent) {
  COptions options;
  options.AddOption(CVerbose(1));
  COptions copy(options);
  EXPECT_NE(&copy.GetOptionAt(0), &options.GetOptionAt(0));
  options.RemoveOption(CVerbose(1));
  EXPECT_EQ(TextsOf(copy), Texts{"-verbose:class"});
}

TEST(OptionsTest, AssignmentReplacesTheOptions) {
  COptions options, other;
  options.AddOption(CVerbose(1));
  options.AddOption(CVerbose(2));
  other.AddOption(CVerbose(3));
  COptions& result = options = other;
  EXPECT_EQ(&result, &options);
  EXPECT_EQ(TextsOf(options), Texts{"-verbose:class,gc,jni"});
  EXPECT_NE(&options.GetOptionAt(0), &other.GetOptionAt(0));
}

TEST(OptionsTest, DestructionReleasesTheClones) {
  Allocations allocations;
  {
    COptions options;
    options.AddOption(CCustomOption(RX_TEXT("-Xint")));
    options.AddOption(CClassPath());
  }
  EXPECT_EQ(allocations.Live(), 0u);
}

TEST(OptionsTest, FailedAddLeavesTheSetAsItWas) {
  const CCustomOption option(RX_TEXT("-Xint"));
  COptions options;
  for (int i = 0; i < 5; ++i) options.AddOption(CVerbose(1));
  bool hasThrown = false;
  const int failures = FailEachAllocation(
      [&] {
        hasThrown = false;
        try {
          options.AddOption(option);
        } catch (const mirel::base::CMemoryException&) {
          hasThrown = true;
        }
      },
      [&](int, const Allocations& allocations) {
        EXPECT_TRUE(hasThrown);
        EXPECT_EQ(TextsOf(options), Texts(5, "-verbose:class"));
        EXPECT_EQ(allocations.Live(), 0u);
      });
  EXPECT_EQ(failures, 3);  // the clone, its text, the larger array
  EXPECT_EQ(options.GetOptionCount(), 6u);
}

}  // namespace
}  // namespace tests
