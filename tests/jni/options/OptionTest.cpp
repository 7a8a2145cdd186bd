// The base of all options.
#include <torvan/jni/options/Option.h>

#include <cstddef>
#include <cstring>
#include <type_traits>

#include "jni/options/OptionSupport.h"

namespace tests {

using namespace torvan::jni;
using namespace torvan::jni::options;

namespace {

class CPlainOption : public COption {
 public:
  mirel::base::CUnicodeString GetOptionString() const override { return RX_TEXT("plain"); }
  void* GetExtraInfo() const override { return nullptr; }
};

TEST(OptionTest, HasNoFields) { EXPECT_EQ(sizeof(COption), sizeof(void*)); }

TEST(OptionTest, IsAnObjectThatOnlyItsSubclassesMake) {
  EXPECT_TRUE((std::is_base_of_v<mirel::base::CObject, COption>));
  EXPECT_TRUE(std::is_abstract_v<COption>);
  EXPECT_FALSE(std::is_default_constructible_v<COption>);
}

TEST(OptionTest, BringsItsRecordAndNeitherEqualityNorClone) {
  const CPlainOption option;
  const CPlainOption other;
  EXPECT_EQ(option.GetClass(), &COption::m_classCOption);
  EXPECT_TRUE(option.Equals(&option));
  EXPECT_FALSE(option.Equals(&other));
  EXPECT_EQ(option.Clone(), nullptr);
}

TEST(OptionTest, CopiesAreSeparateObjects) {
  const CPlainOption option;
  CPlainOption copy(option);
  EXPECT_FALSE(copy.Equals(&option));
  COption& result = static_cast<COption&>(copy) = option;
  EXPECT_EQ(&result, &copy);
}

#if !defined(_MSC_VER)
// In this ABI a pointer to a virtual member holds 1 + the offset of its slot; the destructor has the first two.
template <typename Member>
std::ptrdiff_t SlotOf(Member member) {
  std::ptrdiff_t offset;
  static_assert(sizeof(member) >= sizeof(offset));
  std::memcpy(&offset, &member, sizeof(offset));
  return (offset - 1) / static_cast<std::ptrdiff_t>(sizeof(void*)) - 1;
}

TEST(OptionTest, VirtualOperationsHaveTheirPublishedSlots) {
  EXPECT_EQ(SlotOf(&COption::GetClass), 1);
  EXPECT_EQ(SlotOf(&COption::GetHashCode), 2);
  EXPECT_EQ(SlotOf(&COption::Equals), 3);
  EXPECT_EQ(SlotOf(&COption::Clone), 4);
  EXPECT_EQ(SlotOf(&COption::GetOptionString), 5);
  EXPECT_EQ(SlotOf(&COption::GetExtraInfo), 6);
}
#endif

}  // namespace
}  // namespace tests
