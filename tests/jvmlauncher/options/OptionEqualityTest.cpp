// When options are equal, and what their clones are.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <typeinfo>
#include <vector>

#include "fakes/WideText.h"
#include "jvmlauncher/Access.h"
#include "jvmlauncher/options/Options.h"

namespace tests {

using namespace torvan::jvmlauncher;
using namespace torvan::jvmlauncher::options;
using mirel::base::CClass;
using mirel::base::CObject;

namespace {

// Objects of the options, as they are laid out.
static_assert(sizeof(CJavaVmOption) == sizeof(void*), "no data of its own");
static_assert(sizeof(CClassPathOption) == sizeof(void*) + sizeof(mirel::util::CUnicodeStringVector), "one vector");
static_assert(sizeof(CJarOption) == sizeof(void*) + sizeof(mirel::base::CUnicodeString), "one text");
static_assert(sizeof(CNonStandardOption) == sizeof(CJarOption) && sizeof(CDirectOption) == sizeof(CJarOption),
              "one text");
static_assert(sizeof(CSystemPropertyOption) == sizeof(void*) + 2 * sizeof(mirel::base::CUnicodeString), "two texts");

// A class derived from an option, with its own record.
class CSpecialDirectOption : public CDirectOption {
 public:
  using CDirectOption::CDirectOption;
  const CClass* GetClass() const override { return &s_class; }

 private:
  static CClass s_class;
};
CClass CSpecialDirectOption::s_class("CSpecialDirectOption", "torvan::jvmlauncher::options::CDirectOption", nullptr,
                                     nullptr, sizeof(CSpecialDirectOption), nullptr);

Option SpecialDirect(const char* text) { return Option(new CSpecialDirectOption(Widen(text).c_str())); }

struct PairRow {
  const char* name;
  Option left;
  Option right;
  bool equal;
};

class OptionEqualityPairTest : public testing::TestWithParam<PairRow> {};

TEST_P(OptionEqualityPairTest, HoldsInBothDirections) {
  EXPECT_EQ(GetParam().left->Equals(GetParam().right.get()), GetParam().equal);
  EXPECT_EQ(GetParam().right->Equals(GetParam().left.get()), GetParam().equal);
}

// clang-format off
const PairRow PairRows[] = {
    {"ClassPathsOfTheSameEntries",        ClassPath({"a", "b"}), ClassPath({"a", "b"}), true},
    {"ClassPathsThatDifferInCase",        ClassPath({"C:\\A.jar", "b"}), ClassPath({"c:\\a.JAR", "B"}), true},
    {"ClassPathsInAnotherOrder",          ClassPath({"a", "b"}), ClassPath({"b", "a"}), false},
    {"ClassPathsOfAnotherLength",         ClassPath({"a"}), ClassPath({"a", "b"}), false},
    {"ClassPathsThatDifferInTheLast",     ClassPath({"a", "b"}), ClassPath({"a", "c"}), false},
    {"ClassPathsWithoutEntries",          ClassPath({}), ClassPath({}), true},
    {"JarsOfTheSamePath",                 Jar("a.jar"), Jar("a.jar"), true},
    {"JarsThatDifferInCase",              Jar("C:\\Jars\\A.jar"), Jar("c:\\jars\\a.JAR"), true},
    {"JarsThatDifferInAnUmlautsCase",     Jar("\u00c4.jar"), Jar("\u00e4.jar"), true},
    {"JarsThatDifferInAGreekLettersCase", Jar("\u0394.jar"), Jar("\u03b4.jar"), true},
    {"JarsThatDifferInACyrillicLettersCase", Jar("\u0416.jar"), Jar("\u0436.jar"), true},
    {"JarsWithASharpSAndItsSubstitute",   Jar("\u00df.jar"), Jar("SS.jar"), false},
    {"ClassPathsThatDifferInAnUmlautsCase", ClassPath({"\u00d6"}), ClassPath({"\u00f6"}), true},
    {"JarsOfOtherPaths",                  Jar("a.jar"), Jar("b.jar"), false},
    {"NonStandardOfTheSameText",          NonStandard("mx1g"), NonStandard("mx1g"), true},
    {"NonStandardThatDiffersInCase",      NonStandard("mx1g"), NonStandard("mx1G"), false},
    {"DirectOfTheSameText",               Direct("-ea"), Direct("-ea"), true},
    {"DirectThatDiffersInCase",           Direct("-ea"), Direct("-EA"), false},
    {"PropertiesOfTheSameNameAndValue",   Property("n", "v"), Property("n", "v"), true},
    {"PropertiesWhoseNamesDifferInCase",  Property("n", "v"), Property("N", "v"), false},
    {"PropertiesWhoseValuesDifferInCase", Property("n", "v"), Property("n", "V"), false},
    {"DirectAndNonStandardOfOneText",     Direct("mx1g"), NonStandard("mx1g"), false},
    {"JarAndDirectOfOneText",             Jar("a"), Direct("a"), false},
    {"AnOptionAndOneOfADerivedClass",     Direct("-ea"), SpecialDirect("-ea"), false},
    {"OptionsOfTheSameDerivedClass",      SpecialDirect("-ea"), SpecialDirect("-ea"), true},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Options, OptionEqualityPairTest, testing::ValuesIn(PairRows),
                         [](const auto& row) { return std::string(row.param.name); });

struct KindRow {
  const char* name;
  const CClass* record;
  const char* className;
  Option option;
};

class OptionEqualityKindTest : public testing::TestWithParam<KindRow> {};

TEST_P(OptionEqualityKindTest, EqualsNeitherNullNorAnObjectThatIsNoOption) {
  class CThing : public CObject {};
  EXPECT_FALSE(GetParam().option->Equals(nullptr));
  const CThing thing;
  EXPECT_FALSE(GetParam().option->Equals(&thing));
}

TEST_P(OptionEqualityKindTest, HasItsOwnRecordBelowTheBaseOfAllOptions) {
  const CJavaVmOption& option = *GetParam().option;
  EXPECT_EQ(option.GetClass(), GetParam().record);
  EXPECT_STREQ(option.GetClass()->GetName(), GetParam().className);
  EXPECT_STREQ(option.GetClass()->GetParentName(), "torvan::jvmlauncher::CJavaVmOption");
  EXPECT_TRUE(option.IsInstanceOf(&CJavaVmOption::m_classCJavaVmOption));
  EXPECT_TRUE(option.IsInstanceOf(&CObject::m_classCObject));
}

TEST_P(OptionEqualityKindTest, ClonesToAnEqualObjectOfItsClass) {
  const CJavaVmOption& option = *GetParam().option;
  const std::unique_ptr<CObject> clone(option.Clone());
  ASSERT_NE(clone, nullptr);
  EXPECT_NE(clone.get(), &option);
  const CObject& copy = *clone;
  EXPECT_EQ(typeid(copy), typeid(option));
  EXPECT_TRUE(clone->Equals(&option));
  EXPECT_EQ(LineOf(static_cast<const CJavaVmOption&>(*clone)), LineOf(option));
}

// clang-format off
#define KIND(name) #name, &C##name##Option::m_classC##name##Option, "torvan::jvmlauncher::options::C" #name "Option"
const KindRow Kinds[] = {
    {KIND(ClassPath), ClassPath({"a b"})},
    {KIND(Jar), Jar("a b.jar")},
    {KIND(NonStandard), NonStandard("mx1g")},
    {KIND(Direct), Direct("-ea")},
    {KIND(SystemProperty), Property("n", "v w")},
};
#undef KIND
// clang-format on

INSTANTIATE_TEST_SUITE_P(Options, OptionEqualityKindTest, testing::ValuesIn(Kinds),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(OptionEqualityTest, AClassPathOptionOutgrowsItsClone) {
  CClassPathOption option;
  option.AddEntry(RX_TEXT("a"));
  const std::unique_ptr<CObject> clone(option.Clone());
  option.AddEntry(RX_TEXT("b"));
  EXPECT_FALSE(clone->Equals(&option));
  EXPECT_EQ(static_cast<const CClassPathOption&>(*clone).GetEntryCount(), 1u);
}

TEST(OptionEqualityTest, AssignmentTakesTheOthersContents) {
  CSystemPropertyOption property(RX_TEXT("a"), RX_TEXT("x"));
  property = CSystemPropertyOption(RX_TEXT("b"), RX_TEXT("y"));
  EXPECT_EQ(LineOf(property), "-Db=y");
  CJarOption jar(RX_TEXT("a.jar"));
  jar = CJarOption(RX_TEXT("b.jar"));
  EXPECT_EQ(LineOf(jar), "-jar b.jar");
  CNonStandardOption nonStandard(RX_TEXT("a"));
  nonStandard = CNonStandardOption(RX_TEXT("b"));
  EXPECT_EQ(LineOf(nonStandard), "-Xb");
  CDirectOption direct(RX_TEXT("a"));
  direct = CDirectOption(RX_TEXT("b"));
  EXPECT_EQ(LineOf(direct), "b");
  CClassPathOption classPath;
  CClassPathOption other;
  other.AddEntry(RX_TEXT("a"));
  classPath = other;
  EXPECT_TRUE(classPath.Equals(&other));
}

}  // namespace
}  // namespace tests
