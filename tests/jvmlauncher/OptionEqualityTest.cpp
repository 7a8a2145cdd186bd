// When options are equal, and what their clones are.

#include <gtest/gtest.h>
#include <torvan/jvmlauncher/options/ClassPathOption.h>
#include <torvan/jvmlauncher/options/DirectOption.h>
#include <torvan/jvmlauncher/options/JarOption.h>
#include <torvan/jvmlauncher/options/NonStandardOption.h>
#include <torvan/jvmlauncher/options/SystemPropertyOption.h>

#include <memory>

#include "jvmlauncher/Access.h"

using namespace torvan::jvmlauncher;
using namespace torvan::jvmlauncher::options;
using mirel::base::CClass;
using mirel::base::CObject;
using tests::LineOf;

namespace {

// Objects of the options, as they are laid out.
static_assert(sizeof(CJavaVmOption) == sizeof(void*), "no data of its own");
static_assert(sizeof(CClassPathOption) == sizeof(void*) + sizeof(mirel::util::CUnicodeStringVector), "one vector");
static_assert(sizeof(CJarOption) == sizeof(void*) + sizeof(mirel::base::CUnicodeString), "one text");
static_assert(sizeof(CNonStandardOption) == sizeof(CJarOption) && sizeof(CDirectOption) == sizeof(CJarOption),
              "one text");
static_assert(sizeof(CSystemPropertyOption) == sizeof(void*) + 2 * sizeof(mirel::base::CUnicodeString), "two texts");

using Option = std::shared_ptr<CJavaVmOption>;

Option ClassPath(std::initializer_list<const RX::UniChar*> entries) {
  auto* option = new CClassPathOption();
  for (const RX::UniChar* entry : entries) option->AddEntry(entry);
  return Option(option);
}
Option Jar(const RX::UniChar* path) { return Option(new CJarOption(path)); }
Option NonStandard(const RX::UniChar* text) { return Option(new CNonStandardOption(text)); }
Option Direct(const RX::UniChar* text) { return Option(new CDirectOption(text)); }
Option Property(const RX::UniChar* name, const RX::UniChar* value) {
  return Option(new CSystemPropertyOption(name, value));
}

// A class of its own below an option, with its own record.
class CSpecialDirectOption : public CDirectOption {
 public:
  using CDirectOption::CDirectOption;
  const CClass* GetClass() const override { return &s_class; }

 private:
  static CClass s_class;
};
CClass CSpecialDirectOption::s_class("tests::CSpecialDirectOption", "torvan::jvmlauncher::options::CDirectOption",
                                     nullptr, nullptr, sizeof(CSpecialDirectOption), nullptr);

struct Row {
  const char* name;
  Option left;
  Option right;
  bool equal;
};

class OptionEquality : public testing::TestWithParam<Row> {};

TEST_P(OptionEquality, HoldsInBothDirections) {
  EXPECT_EQ(GetParam().left->Equals(GetParam().right.get()), GetParam().equal);
  EXPECT_EQ(GetParam().right->Equals(GetParam().left.get()), GetParam().equal);
}

// clang-format off
const Row Rows[] = {
    {"ClassPathsOfTheSameEntries",        ClassPath({RX_TEXT("a"), RX_TEXT("b")}), ClassPath({RX_TEXT("a"), RX_TEXT("b")}), true},
    {"ClassPathsThatDifferInCase",        ClassPath({RX_TEXT("C:\\A.jar"), RX_TEXT("b")}), ClassPath({RX_TEXT("c:\\a.JAR"), RX_TEXT("B")}), true},
    {"ClassPathsInAnotherOrder",          ClassPath({RX_TEXT("a"), RX_TEXT("b")}), ClassPath({RX_TEXT("b"), RX_TEXT("a")}), false},
    {"ClassPathsOfAnotherLength",         ClassPath({RX_TEXT("a")}), ClassPath({RX_TEXT("a"), RX_TEXT("b")}), false},
    {"ClassPathsThatDifferInTheLast",     ClassPath({RX_TEXT("a"), RX_TEXT("b")}), ClassPath({RX_TEXT("a"), RX_TEXT("c")}), false},
    {"ClassPathsWithoutEntries",          ClassPath({}), ClassPath({}), true},
    {"JarsOfTheSamePath",                 Jar(RX_TEXT("a.jar")), Jar(RX_TEXT("a.jar")), true},
    {"JarsThatDifferInCase",              Jar(RX_TEXT("C:\\Jars\\A.jar")), Jar(RX_TEXT("c:\\jars\\a.JAR")), true},
    {"JarsThatDifferInAnUmlautsCase",     Jar(RX_TEXT("\u00c4.jar")), Jar(RX_TEXT("\u00e4.jar")), true},
    {"JarsOfOtherPaths",                  Jar(RX_TEXT("a.jar")), Jar(RX_TEXT("b.jar")), false},
    {"NonStandardOfTheSameText",          NonStandard(RX_TEXT("mx1g")), NonStandard(RX_TEXT("mx1g")), true},
    {"NonStandardThatDiffersInCase",      NonStandard(RX_TEXT("mx1g")), NonStandard(RX_TEXT("mx1G")), false},
    {"DirectOfTheSameText",               Direct(RX_TEXT("-ea")), Direct(RX_TEXT("-ea")), true},
    {"DirectThatDiffersInCase",           Direct(RX_TEXT("-ea")), Direct(RX_TEXT("-EA")), false},
    {"PropertiesOfTheSameNameAndValue",   Property(RX_TEXT("n"), RX_TEXT("v")), Property(RX_TEXT("n"), RX_TEXT("v")), true},
    {"PropertiesWhoseNamesDifferInCase",  Property(RX_TEXT("n"), RX_TEXT("v")), Property(RX_TEXT("N"), RX_TEXT("v")), false},
    {"PropertiesWhoseValuesDifferInCase", Property(RX_TEXT("n"), RX_TEXT("v")), Property(RX_TEXT("n"), RX_TEXT("V")), false},
    {"DirectAndNonStandardOfOneText",     Direct(RX_TEXT("mx1g")), NonStandard(RX_TEXT("mx1g")), false},
    {"JarAndDirectOfOneText",             Jar(RX_TEXT("a")), Direct(RX_TEXT("a")), false},
    {"AnOptionAndOneOfADerivedClass",     Direct(RX_TEXT("-ea")), Option(new CSpecialDirectOption(RX_TEXT("-ea"))), false},
    {"OptionsOfTheSameDerivedClass",      Option(new CSpecialDirectOption(RX_TEXT("-ea"))), Option(new CSpecialDirectOption(RX_TEXT("-ea"))), true},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Options, OptionEquality, testing::ValuesIn(Rows),
                         [](const auto& row) { return std::string(row.param.name); });

struct KindRow {
  const char* name;
  Option option;
  const CClass* record;
  const char* className;
};

class EveryOption : public testing::TestWithParam<KindRow> {};

TEST_P(EveryOption, EqualsNeitherNullNorAnObjectThatIsNoOption) {
  class CThing : public CObject {};
  EXPECT_FALSE(GetParam().option->Equals(nullptr));
  const CThing thing;
  EXPECT_FALSE(GetParam().option->Equals(&thing));
}

TEST_P(EveryOption, HasItsOwnRecordBelowTheBaseOfAllOptions) {
  const CJavaVmOption& option = *GetParam().option;
  EXPECT_EQ(option.GetClass(), GetParam().record);
  EXPECT_STREQ(option.GetClass()->GetName(), GetParam().className);
  EXPECT_STREQ(option.GetClass()->GetParentName(), "torvan::jvmlauncher::CJavaVmOption");
  EXPECT_TRUE(option.IsInstanceOf(&CJavaVmOption::m_classCJavaVmOption));
  EXPECT_TRUE(option.IsInstanceOf(&CObject::m_classCObject));
}

TEST_P(EveryOption, ClonesToAnEqualObjectOfItsClass) {
  const CJavaVmOption& option = *GetParam().option;
  const std::unique_ptr<CObject> clone(option.Clone());
  ASSERT_NE(clone, nullptr);
  EXPECT_NE(clone.get(), &option);
  EXPECT_EQ(typeid(*clone), typeid(option));
  EXPECT_TRUE(clone->Equals(&option));
  EXPECT_EQ(LineOf(static_cast<const CJavaVmOption&>(*clone)), LineOf(option));
}

// clang-format off
const KindRow Kinds[] = {
    {"ClassPath", ClassPath({RX_TEXT("a b")}), &CClassPathOption::m_classCClassPathOption, "torvan::jvmlauncher::options::CClassPathOption"},
    {"Jar", Jar(RX_TEXT("a b.jar")), &CJarOption::m_classCJarOption, "torvan::jvmlauncher::options::CJarOption"},
    {"NonStandard", NonStandard(RX_TEXT("mx1g")), &CNonStandardOption::m_classCNonStandardOption, "torvan::jvmlauncher::options::CNonStandardOption"},
    {"Direct", Direct(RX_TEXT("-ea")), &CDirectOption::m_classCDirectOption, "torvan::jvmlauncher::options::CDirectOption"},
    {"Property", Property(RX_TEXT("n"), RX_TEXT("v w")), &CSystemPropertyOption::m_classCSystemPropertyOption, "torvan::jvmlauncher::options::CSystemPropertyOption"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Options, EveryOption, testing::ValuesIn(Kinds),
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
