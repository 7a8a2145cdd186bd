#include <torvan/Torvan.h>

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <ostream>
#include <string>

namespace tests {
namespace {

using mirel::base::CClass;
using mirel::base::CException;
using mirel::base::CObject;
using namespace torvan::jni;
using namespace torvan::jni::options;
using namespace torvan::jvmlauncher;
using namespace torvan::jvmlauncher::options;

struct Row {
  const char* shortName;
  const CClass* record;
  const char* name;
  const char* parentName;
  std::size_t size;
};
std::ostream& operator<<(std::ostream& out, const Row& row) { return out << row.shortName; }

#define ROW(Class, name, parentName) \
  { #Class, &Class::m_class##Class, name, parentName, sizeof(Class) }

// Every record of the library, in the order in which they are built.
// clang-format off
const Row rows[] = {
ROW(CJavaException,        "torvan::jni::CJavaException",       "torvan::jni::CJniException"),
ROW(CJavaRuntimeException, "mirel::jni::CJavaRuntimeException", "torvan::jni::CJniException"),
ROW(CJavaVmException,      "torvan::jni::CJavaVmException",     "torvan::jni::CJniException"),
ROW(CJniException,         "torvan::jni::CJniException",        "mirel::base::CException"),
ROW(CCustomOption,   "torvan::jni::options::CCustomOption",   "torvan::jni::options::COption"),
ROW(CHook,           "torvan::jni::options::CHook",           "torvan::jni::options::COption"),
ROW(CAbortHook,      "torvan::jni::options::CAbortHook",      "torvan::jni::options::CHook"),
ROW(CExitHook,       "torvan::jni::options::CExitHook",       "torvan::jni::options::CHook"),
ROW(CVfprintfHook,   "torvan::jni::options::CVfprintfHook",   "torvan::jni::options::CHook"),
ROW(CPathList,       "torvan::jni::options::CPathList",       "torvan::jni::options::CSystemProperty"),
ROW(CClassPath,      "torvan::jni::options::CClassPath",      "torvan::jni::options::CPathList"),
ROW(CLibraryPath,    "torvan::jni::options::CLibraryPath",    "torvan::jni::options::CPathList"),
ROW(COption,         "torvan::jni::options::COption",         "mirel::base::CBase"),
ROW(CSystemProperty, "torvan::jni::options::CSystemProperty", "torvan::jni::options::COption"),
ROW(CVerbose,        "torvan::jni::options::CVerbose",        "torvan::jni::options::COption"),
ROW(CJavaVmLauncherException, "torvan::jvmlauncher::CJavaVmLauncherException", "mirel::base::CException"),
ROW(CJavaVmOption,            "torvan::jvmlauncher::CJavaVmOption",            "mirel::base::CObject"),
ROW(CClassPathOption,      "torvan::jvmlauncher::options::CClassPathOption",      "torvan::jvmlauncher::CJavaVmOption"),
ROW(CJarOption,            "torvan::jvmlauncher::options::CJarOption",            "torvan::jvmlauncher::CJavaVmOption"),
ROW(CNonStandardOption,    "torvan::jvmlauncher::options::CNonStandardOption",    "torvan::jvmlauncher::CJavaVmOption"),
ROW(CDirectOption,         "torvan::jvmlauncher::options::CDirectOption",         "torvan::jvmlauncher::CJavaVmOption"),
ROW(CSystemPropertyOption, "torvan::jvmlauncher::options::CSystemPropertyOption", "torvan::jvmlauncher::CJavaVmOption"),
};
// clang-format on

#undef ROW

class TypeRecordsRowTest : public ::testing::TestWithParam<Row> {};

TEST_P(TypeRecordsRowTest, NamesTheClassAndItsParentAndKnowsTheSize) {
  EXPECT_STREQ(GetParam().record->GetName(), GetParam().name);
  EXPECT_STREQ(GetParam().record->GetParentName(), GetParam().parentName);
  EXPECT_EQ(GetParam().record->GetInstanceSize(), GetParam().size);
}

TEST_P(TypeRecordsRowTest, FindsTheRegisteredParent) {
  const CClass* const parent = GetParam().record->GetParent();
  if (std::string(GetParam().parentName) == "mirel::base::CBase") {
    EXPECT_EQ(parent, nullptr) << "the allocation base has no record";
  } else {
    ASSERT_NE(parent, nullptr);
    EXPECT_STREQ(parent->GetName(), GetParam().parentName);
  }
}

INSTANTIATE_TEST_SUITE_P(All, TypeRecordsRowTest, ::testing::ValuesIn(rows),
                         [](const auto& row) { return std::string(row.param.shortName); });

// The registry links each record to the one built before it, in the record's last field.
const CClass* BuiltBefore(const CClass* record) {
  const CClass* before;
  std::memcpy(&before, reinterpret_cast<const char*>(record + 1) - sizeof(before), sizeof(before));
  return before;
}

TEST(TypeRecordsTest, AreBuiltInTheOrderOfTheTable) {
  for (std::size_t i = 1; i < std::size(rows); ++i) {
    SCOPED_TRACE(rows[i].shortName);
    EXPECT_EQ(BuiltBefore(rows[i].record), rows[i - 1].record);
  }
}

TEST(TypeRecordsTest, ObjectsAreInstancesOfTheirRegisteredParents) {
  const CJniException jni(nullptr, 0, nullptr, nullptr);
  const CJavaRuntimeException runtime(nullptr, 0, nullptr, nullptr);
  const CJavaVmException vm(nullptr, 0, nullptr, nullptr);
  const CJavaException java({}, {}, {});
  const CJavaVmLauncherException launcher(nullptr, 0, nullptr, nullptr);
  const CCustomOption custom(RX_TEXT("-Xint"));
  const CClassPath classPath;
  const CVfprintfHook hook([](FILE*, const char*, va_list) { return 0; });
  const CDirectOption direct(RX_TEXT("-ea"));

  struct Case {
    const CObject& object;
    const CClass& type;
    bool isInstance;
  };
  const Case cases[] = {
      {jni, CJniException::m_classCJniException, true},
      {runtime, CJniException::m_classCJniException, true},
      {vm, CJniException::m_classCJniException, true},
      {java, CJniException::m_classCJniException, true},
      {launcher, CJniException::m_classCJniException, false},
      {jni, CException::m_classCException, true},
      {runtime, CException::m_classCException, true},
      {java, CObject::m_classCObject, true},
      {launcher, CException::m_classCException, true},
      {launcher, CObject::m_classCObject, true},
      {runtime, CJavaRuntimeException::m_classCJavaRuntimeException, true},
      {runtime, CJavaVmException::m_classCJavaVmException, false},
      {jni, CJavaRuntimeException::m_classCJavaRuntimeException, false},
      {custom, COption::m_classCOption, true},
      {custom, CHook::m_classCHook, false},
      {classPath, CPathList::m_classCPathList, true},
      {classPath, CSystemProperty::m_classCSystemProperty, true},
      {classPath, COption::m_classCOption, true},
      {classPath, CLibraryPath::m_classCLibraryPath, false},
      {hook, CHook::m_classCHook, true},
      {hook, COption::m_classCOption, true},
      {direct, CJavaVmOption::m_classCJavaVmOption, true},
      {direct, COption::m_classCOption, false},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(std::string(row.object.GetClass()->GetName()) + " of " + row.type.GetName());
    EXPECT_EQ(row.object.IsInstanceOf(&row.type), row.isInstance);
  }
}

TEST(TypeRecordsTest, ByTheRecordsOptionsInProcessAreNoObjectsButLauncherOptionsAre) {
  EXPECT_FALSE(CCustomOption(RX_TEXT("-Xint")).IsInstanceOf(&CObject::m_classCObject));
  EXPECT_TRUE(CDirectOption(RX_TEXT("-ea")).IsInstanceOf(&CObject::m_classCObject));
}

}  // namespace
}  // namespace tests
