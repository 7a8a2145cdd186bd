#include <mirel/base/IllegalArgumentException.h>
#include <torvan/jni/options/CustomOption.h>

#include "fakes/Allocations.h"
#include "fakes/Failure.h"
#include "jni/options/OptionSupport.h"

namespace tests {

using namespace torvan::jni;
using namespace torvan::jni::options;

namespace {

using mirel::base::CIllegalArgumentException;

TEST(CustomOptionTest, KeepsItsTextUnchanged) {
  const CCustomOption option(RX_TEXT(" -Xbootclasspath:a b,\u00E4 "));
  EXPECT_EQ(Text(option.GetValue()), " -Xbootclasspath:a b,\xC3\xA4 ");
  EXPECT_EQ(Text(option.GetOptionString()), " -Xbootclasspath:a b,\xC3\xA4 ");
  EXPECT_EQ(option.GetExtraInfo(), nullptr);
}

TEST(CustomOptionTest, KeepsACopyOfItsText) {
  RX::UniChar text[] = {'-', 'X', 'a', 0};
  const CCustomOption option(text);
  text[2] = 'b';
  EXPECT_EQ(Text(option.GetValue()), "-Xa");
}

TEST(CustomOptionTest, NeedsAText) {
  const auto invalid =
      Throws<CIllegalArgumentException>("jni/options/CustomOption", 42, "Invalid custom option value.");
  EXPECT_EQ(FailureOf([] { CCustomOption option(nullptr); }), invalid);
  EXPECT_EQ(FailureOf([] { CCustomOption option(RX_TEXT("")); }), invalid);
}

TEST(CustomOptionTest, NeedsNoMemoryToRefuseAnEmptyText) {
  Allocations allocations;
  EXPECT_THROW(CCustomOption(RX_TEXT("")), CIllegalArgumentException);
  EXPECT_EQ(allocations.Made(), 0);
}

TEST(CustomOptionTest, EqualsOneWithEqualText) {
  const CCustomOption option(RX_TEXT("-Xmx64m"));
  const CCustomOption equal(RX_TEXT("-Xmx64m"));
  const CCustomOption otherCase(RX_TEXT("-XMX64m"));
  EXPECT_TRUE(option.Equals(&equal));
  EXPECT_TRUE(equal.Equals(&option));
  EXPECT_FALSE(option.Equals(&otherCase));
}

// A class with its own record is another class, whatever it derives from.
class CMarkedOption : public CCustomOption {
 public:
  using CCustomOption::CCustomOption;
  const mirel::base::CClass* GetClass() const override { return &COption::m_classCOption; }
};

class CUnmarkedOption : public CCustomOption {
 public:
  using CCustomOption::CCustomOption;
};

TEST(CustomOptionTest, EqualsASubclassOnlyWithTheSameRecord) {
  const CCustomOption option(RX_TEXT("-Xmx64m"));
  const CMarkedOption marked(RX_TEXT("-Xmx64m"));
  const CUnmarkedOption unmarked(RX_TEXT("-Xmx64m"));
  EXPECT_FALSE(option.Equals(&marked));
  EXPECT_FALSE(marked.Equals(&option));
  EXPECT_TRUE(option.Equals(&unmarked));
  EXPECT_TRUE(unmarked.Equals(&option));
}

TEST(CustomOptionTest, CopiesAsAValue) {
  ExpectCopiesAsAValue(CCustomOption(RX_TEXT("-Xmx64m")), CCustomOption(RX_TEXT("-Xint")));
}

}  // namespace
}  // namespace tests
