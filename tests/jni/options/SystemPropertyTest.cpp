#include <mirel/base/IllegalArgumentException.h>
#include <torvan/jni/options/SystemProperty.h>

#include <ostream>

#include "fakes/Failure.h"
#include "fakes/TextRoom.h"
#include "jni/options/OptionSupport.h"

namespace tests {

using namespace torvan::jni;
using namespace torvan::jni::options;

namespace {

using mirel::base::CIllegalArgumentException;

struct WellKnownName {
  const char* member;
  const RX::UniChar* actual;
  const char* expected;
};
void PrintTo(const WellKnownName& row, std::ostream* out) { *out << row.member; }

// clang-format off
const WellKnownName WellKnownNames[] = {
    {"ClassPath",              CSystemProperty::ClassPath,              "java.class.path"},
    {"ClassVersion",           CSystemProperty::ClassVersion,           "java.class.version"},
    {"Compiler",               CSystemProperty::Compiler,               "java.compiler"},
    {"ExtDirs",                CSystemProperty::ExtDirs,                "java.ext.dirs"},
    {"FileSeparator",          CSystemProperty::FileSeparator,          "file.separator"},
    {"Home",                   CSystemProperty::Home,                   "java.home"},
    {"IoTmpDir",               CSystemProperty::IoTmpDir,               "java.io.tmpdir"},
    {"LibraryPath",            CSystemProperty::LibraryPath,            "java.library.path"},
    {"LineSeparator",          CSystemProperty::LineSeparator,          "line.separator"},
    {"PathSeparator",          CSystemProperty::PathSeparator,          "path.separator"},
    {"OsArch",                 CSystemProperty::OsArch,                 "os.arch"},
    {"OsName",                 CSystemProperty::OsName,                 "os.name"},
    {"OsVersion",              CSystemProperty::OsVersion,              "os.version"},
    {"SpecificationName",      CSystemProperty::SpecificationName,      "java.specification.name"},
    {"SpecificationVendor",    CSystemProperty::SpecificationVendor,    "java.specification.vendor"},
    {"SpecificationVersion",   CSystemProperty::SpecificationVersion,   "java.specification.version"},
    {"UserDir",                CSystemProperty::UserDir,                "user.dir"},
    {"UserName",               CSystemProperty::UserName,               "user.name"},
    {"UserHome",               CSystemProperty::UserHome,               "user.home"},
    {"Vendor",                 CSystemProperty::Vendor,                 "java.vendor"},
    {"VendorUrl",              CSystemProperty::VendorUrl,              "java.vendor.url"},
    {"Version",                CSystemProperty::Version,                "java.version"},
    {"VmName",                 CSystemProperty::VmName,                 "java.vm.name"},
    {"VmSpecificationName",    CSystemProperty::VmSpecificationName,    "java.vm.specification.name"},
    {"VmSpecificationVendor",  CSystemProperty::VmSpecificationVendor,  "java.vm.specification.vendor"},
    {"VmSpecificationVersion", CSystemProperty::VmSpecificationVersion, "java.vm.specification.version"},
    {"VmVendor",               CSystemProperty::VmVendor,               "java.vm.vendor"},
    {"VmVersion",              CSystemProperty::VmVersion,              "java.vm.version"},
};
// clang-format on

class SystemPropertyNameTest : public ::testing::TestWithParam<WellKnownName> {};

// The table above is filled at start-up, so it also shows that the names are there before any start-up code runs.
TEST_P(SystemPropertyNameTest, HasItsText) { EXPECT_EQ(Narrow(GetParam().actual), GetParam().expected); }

INSTANTIATE_TEST_SUITE_P(Names, SystemPropertyNameTest, ::testing::ValuesIn(WellKnownNames),
                         [](const auto& row) { return row.param.member; });

TEST(SystemPropertyTest, RendersNameAndValue) {
  const CSystemProperty property(RX_TEXT("user.dir"), RX_TEXT("C:\\work"));
  EXPECT_EQ(Text(property.GetName()), "user.dir");
  EXPECT_EQ(Text(property.GetValue()), "C:\\work");
  EXPECT_EQ(Text(property.GetOptionString()), "-Duser.dir=C:\\work");
  EXPECT_EQ(property.GetExtraInfo(), nullptr);
}

TEST(SystemPropertyTest, NeitherQuotesNorCutsWhatItRenders) {
  const std::string value(300, 'x');
  const CSystemProperty property(RX_TEXT("a=b c"), Widen("\"" + value + ";").c_str());
  EXPECT_EQ(Text(property.GetOptionString()), "-Da=b c=\"" + value + ";");
}

TEST(SystemPropertyTest, RenderingStartsWithRoomFor32Units) {
  const CSystemProperty property(RX_TEXT("a"), RX_TEXT("b"));
  EXPECT_EQ(FirstRoomOf([&] { property.GetOptionString(); }), RoomForUnits(32));
}

TEST(SystemPropertyTest, NeedsANameBeforeAValue) {
  const auto invalid =
      Throws<CIllegalArgumentException>("jni/options/SystemProperty", 94, "Invalid system property name.");
  EXPECT_EQ(FailureOf([] { CSystemProperty property(nullptr, RX_TEXT("x")); }), invalid);
  EXPECT_EQ(FailureOf([] { CSystemProperty property(RX_TEXT(""), RX_TEXT("x")); }), invalid);
  EXPECT_EQ(FailureOf([] { CSystemProperty property(nullptr, nullptr); }), invalid);
  EXPECT_EQ(FailureOf([] { CSystemProperty property(RX_TEXT(""), RX_TEXT("")); }), invalid);
}

TEST(SystemPropertyTest, NeedsAValue) {
  const auto invalid =
      Throws<CIllegalArgumentException>("jni/options/SystemProperty", 96, "Invalid system property value.");
  EXPECT_EQ(FailureOf([] { CSystemProperty property(RX_TEXT("java.home"), nullptr); }), invalid);
  EXPECT_EQ(FailureOf([] { CSystemProperty property(RX_TEXT("java.home"), RX_TEXT("")); }), invalid);
}

TEST(SystemPropertyTest, EqualsOneWithEqualNameAndValue) {
  const CSystemProperty property(RX_TEXT("name"), RX_TEXT("value"));
  const CSystemProperty equal(RX_TEXT("name"), RX_TEXT("value"));
  const CSystemProperty otherName(RX_TEXT("Name"), RX_TEXT("value"));
  const CSystemProperty otherValue(RX_TEXT("name"), RX_TEXT("Value"));
  EXPECT_TRUE(property.Equals(&equal));
  EXPECT_TRUE(equal.Equals(&property));
  EXPECT_FALSE(property.Equals(&otherName));
  EXPECT_FALSE(property.Equals(&otherValue));
}

TEST(SystemPropertyTest, ComparesNameAndValueNotTheText) {
  const CSystemProperty property(RX_TEXT("a"), RX_TEXT("b=c"));
  const CSystemProperty sameText(RX_TEXT("a=b"), RX_TEXT("c"));
  ASSERT_EQ(Text(property.GetOptionString()), Text(sameText.GetOptionString()));
  EXPECT_FALSE(property.Equals(&sameText));
}

TEST(SystemPropertyTest, CopiesAsAValue) {
  ExpectCopiesAsAValue(CSystemProperty(RX_TEXT("a"), RX_TEXT("1")), CSystemProperty(RX_TEXT("b"), RX_TEXT("2")));
}

}  // namespace
}  // namespace tests
