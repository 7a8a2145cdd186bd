// The set of launcher options.

#include <gmock/gmock.h>
#include <mirel/base/IllegalArgumentException.h>
#include <mirel/base/MemoryException.h>
#include <mirel/util/NoSuchElementException.h>
#include <torvan/jvmlauncher/options/ClassPathOption.h>
#include <torvan/jvmlauncher/options/DirectOption.h>
#include <torvan/jvmlauncher/options/JarOption.h>
#include <torvan/jvmlauncher/options/NonStandardOption.h>

#include "fakes/Allocations.h"
#include "fakes/DebugOut.h"
#include "fakes/Failure.h"
#include "jvmlauncher/Access.h"

namespace tests {

using namespace torvan::jvmlauncher;
using namespace torvan::jvmlauncher::options;
using mirel::base::CIllegalArgumentException;
using mirel::base::CObject;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

static_assert(sizeof(CJavaVmOptions) == sizeof(mirel::util::CObjectVector), "a set is one vector");

CDirectOption Direct(const RX::UniChar* text) { return CDirectOption(text); }

CJavaVmOptions SetOf(std::initializer_list<const RX::UniChar*> texts) {
  CJavaVmOptions options;
  for (const RX::UniChar* text : texts) options.AddOption(Direct(text));
  return options;
}

TEST(JavaVmOptionsTest, AnEmptySetRendersAsNothing) {
  const CJavaVmOptions options;
  CArgumentList list;
  EXPECT_EQ(options.GetOptionCount(), 0u);
  EXPECT_EQ(LineOf(options), "");
  EXPECT_EQ(AppendTo(list, options), 0u);
  EXPECT_EQ(list.GetArgumentCount(), 0u);
}

TEST(JavaVmOptionsTest, OptionsRenderInOrderEachWithASpaceAfterIt) {
  CJavaVmOptions options;
  CClassPathOption classPath;
  classPath.AddEntry(RX_TEXT("a"));
  options.AddOption(CNonStandardOption(RX_TEXT("mx1g")));
  options.AddOption(classPath);
  options.AddOption(CJarOption(RX_TEXT("b c.jar")));
  EXPECT_EQ(LineOf(options), OnThisSystem("-Xmx1g -cp a; -jar \"b c.jar\" ", "-Xmx1g -cp a: -jar \"b c.jar\" "));
  CArgumentList list;
  EXPECT_EQ(AppendTo(list, options), 5u);
  EXPECT_THAT(ArgumentsOf(list), ElementsAre("-Xmx1g", "-cp", OnThisSystem("a;", "a:"), "-jar", "b c.jar"));
}

TEST(JavaVmOptionsTest, AnOptionThatRendersAsNothingStillHasItsSpace) {
  CJavaVmOptions options;
  options.AddOption(CClassPathOption());
  EXPECT_EQ(LineOf(options), " ");
  options.AddOption(Direct(RX_TEXT("-ea")));
  EXPECT_EQ(LineOf(options), " -ea ");
}

TEST(JavaVmOptionsTest, TheSetHoldsClones) {
  CJavaVmOptions options;
  CClassPathOption classPath;
  classPath.AddEntry(RX_TEXT("a"));
  options.AddOption(classPath);
  EXPECT_NE(&options.GetOptionAt(0), &classPath);
  classPath.AddEntry(RX_TEXT("b"));
  EXPECT_EQ(LineOf(options), OnThisSystem("-cp a; ", "-cp a: "));
}

TEST(JavaVmOptionsTest, EqualOptionsAreKeptTwiceAndRemovedOneByOne) {
  CJavaVmOptions options = SetOf({RX_TEXT("-ea"), RX_TEXT("-x"), RX_TEXT("-ea")});
  EXPECT_EQ(LineOf(options), "-ea -x -ea ");
  options.RemoveOption(Direct(RX_TEXT("-ea")));
  EXPECT_EQ(LineOf(options), "-x -ea ");
  options.RemoveOption(Direct(RX_TEXT("-ea")));
  EXPECT_EQ(LineOf(options), "-x ");
}

TEST(JavaVmOptionsTest, RemovingFollowsTheOptionsOwnEquality) {
  CJavaVmOptions options;
  options.AddOption(CJarOption(RX_TEXT("A.jar")));
  options.AddOption(Direct(RX_TEXT("mx1g")));
  options.RemoveOption(CNonStandardOption(RX_TEXT("mx1g")));
  EXPECT_EQ(LineOf(options), "-jar A.jar mx1g ");
  options.RemoveOption(CJarOption(RX_TEXT("a.JAR")));
  EXPECT_EQ(LineOf(options), "mx1g ");
}

TEST(JavaVmOptionsTest, RemovingWhatIsNotThereDoesNothing) {
  CJavaVmOptions options = SetOf({RX_TEXT("-ea")});
  const DebugOut debugOut;
  options.RemoveOption(Direct(RX_TEXT("-EA")));
  EXPECT_EQ(LineOf(options), "-ea ");
  EXPECT_EQ(debugOut.Text(), "");
}

TEST(JavaVmOptionsTest, AnOptionOfTheSetCanBeGivenForRemoval) {
  CJavaVmOptions options = SetOf({RX_TEXT("-a"), RX_TEXT("-b")});
  options.RemoveOption(options.GetOptionAt(1));
  EXPECT_EQ(LineOf(options), "-a ");
}

// Equal to every option; throws at a comparison of the test's choice.
class CBrittleOption : public CDirectOption {
 public:
  using CDirectOption::CDirectOption;
  bool Equals(const CObject*) const override {
    if (--s_comparisonsLeft < 0) throw CIllegalArgumentException("tests/Brittle", 7, "Not comparable.", nullptr);
    return true;
  }
  CObject* Clone() const override { return new CBrittleOption(*this); }

  static inline int s_comparisonsLeft = 0;
};

TEST(JavaVmOptionsTest, AFailureOfRemovingIsPrintedAndGoesNoFurther) {
  for (const int comparisons : {0, 1}) {
    SCOPED_TRACE(comparisons == 0 ? "while it is looked for" : "while it is removed");
    CJavaVmOptions options;
    const CBrittleOption brittle(RX_TEXT("-brittle"));
    options.AddOption(brittle);
    const DebugOut debugOut;
    CBrittleOption::s_comparisonsLeft = comparisons;
    options.RemoveOption(brittle);
    EXPECT_EQ(CBrittleOption::s_comparisonsLeft, -1);
    EXPECT_THAT(debugOut.Text(), HasSubstr("Not comparable."));
    EXPECT_THAT(debugOut.Text(), HasSubstr("tests/Brittle"));
    EXPECT_EQ(LineOf(options), "-brittle ");
  }
}

TEST(JavaVmOptionsTest, AnOptionWithoutACloneIsRefusedByTheVector) {
  class CNoClone : public CDirectOption {
   public:
    using CDirectOption::CDirectOption;
    CObject* Clone() const override { return nullptr; }
  };
  CJavaVmOptions options;
  const auto failure = FailureOf([&] { options.AddOption(CNoClone(RX_TEXT("-x"))); });
  EXPECT_EQ(failure.message, "Invalid object.");
  EXPECT_EQ(options.GetOptionCount(), 0u);
}

TEST(JavaVmOptionsTest, CopiesAreDeep) {
  CJavaVmOptions options = SetOf({RX_TEXT("-a"), RX_TEXT("-b"), RX_TEXT("-c")});
  CJavaVmOptions copy(options);
  CJavaVmOptions assigned = SetOf({RX_TEXT("-x")});
  assigned = options;
  options.RemoveOption(Direct(RX_TEXT("-b")));
  EXPECT_EQ(LineOf(options), "-a -c ");
  EXPECT_EQ(LineOf(copy), "-a -b -c ");
  EXPECT_EQ(LineOf(assigned), "-a -b -c ");
  EXPECT_NE(&copy.GetOptionAt(0), &options.GetOptionAt(0));
  EXPECT_NE(&copy.GetOptionAt(0), &assigned.GetOptionAt(0));
}

TEST(JavaVmOptionsTest, AnIndexPastTheEndIsTheVectorsFailure) {
  const CJavaVmOptions options = SetOf({RX_TEXT("-a")});
  EXPECT_EQ(FailureOf([&] { options.GetOptionAt(1); }),
            Throws<mirel::util::CNoSuchElementException>("mirel/util/Vector", 175, nullptr));
}

TEST(JavaVmOptionsTest, TheSetHasRoomForTwoOptionsAndGrowsByTwo) {
  const CDirectOption option(RX_TEXT("-a"));
  Allocations allocations;
  CJavaVmOptions options;
  EXPECT_EQ(allocations.LastSize(), 2 * sizeof(CObject*));
  std::vector<int> made;
  for (int i = 0; i < 6; ++i) {
    allocations.Fail(0);
    options.AddOption(option);
    made.push_back(allocations.Made());
  }
  // The clone and its text; before every second one, a larger array.
  EXPECT_THAT(made, ElementsAre(2, 2, 3, 2, 3, 2));
}

TEST(JavaVmOptionsTest, WhenMemoryRunsOutTheSetHoldsWhatItHeld) {
  const CDirectOption third(RX_TEXT("-c"));
  int failedAdds = 0;
  FailEachAllocation(
      [&] {
        try {
          CJavaVmOptions options = SetOf({RX_TEXT("-a"), RX_TEXT("-b")});
          try {
            options.AddOption(third);
          } catch (const mirel::base::CMemoryException&) {
            ++failedAdds;
            EXPECT_EQ(options.GetOptionCount(), 2u);
            EXPECT_FALSE(options.GetOptionAt(1).Equals(&third));
            throw;
          }
          EXPECT_EQ(LineOf(options), "-a -b -c ");
        } catch (const mirel::base::CMemoryException&) {
        }
      },
      [&](int, const Allocations& allocations) { EXPECT_EQ(allocations.Live(), 0u); });
  EXPECT_GE(failedAdds, 3);  // the clone, its text, the array
}

}  // namespace
}  // namespace tests
