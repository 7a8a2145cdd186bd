#include <gtest/gtest.h>
#include <mirel/base/IllegalArgumentException.h>
#include <mirel/base/MemoryException.h>
#include <mirel/base/NullReferenceException.h>
#include <mirel/base/win/WinSystemErrorException.h>
#include <mirel/util/NoSuchElementException.h>

#include <memory>
#include <optional>
#include <string>

#include "foundation/plugin/Plugin.h"

namespace tests {
namespace {

using namespace mirel::base;
using mirel::base::win::CWinSystemErrorException;
using mirel::util::CNoSuchElementException;

TEST(ClassTest, ARecordReturnsWhatItWasMadeWith) {
  const CClass record("test::A", "test::B", "x", "y", 48, nullptr);
  EXPECT_STREQ(record.GetName(), "test::A");
  EXPECT_STREQ(record.GetParentName(), "test::B");
  EXPECT_EQ(record.GetInstanceSize(), 48u);
}

TEST(ClassTest, AParentIsFoundOnceItIsRegisteredAndNotFoundAfterItsEnd) {
  const CClass child("test::Child", "test::Parent", nullptr, nullptr, 1, nullptr);
  EXPECT_EQ(child.GetParent(), nullptr);
  std::optional<CClass> parent;
  parent.emplace("test::Parent", nullptr, nullptr, nullptr, 1u, nullptr);
  EXPECT_EQ(child.GetParent(), &*parent);
  parent.reset();
  EXPECT_EQ(child.GetParent(), nullptr);
}

TEST(ClassTest, ARecordWithoutAParentNameHasNoParent) {
  const CClass record("test::Root", nullptr, nullptr, nullptr, 1, nullptr);
  EXPECT_EQ(record.GetParent(), nullptr);
}

TEST(ClassTest, RecordsMayEndInAnyOrder) {
  const CClass child("test::Child", "test::First", nullptr, nullptr, 1, nullptr);
  auto first = std::make_unique<CClass>("test::First", nullptr, nullptr, nullptr, 1u, nullptr);
  auto second = std::make_unique<CClass>("test::Second", "test::First", nullptr, nullptr, 1u, nullptr);
  const CClass third("test::Third", "test::Second", nullptr, nullptr, 1, nullptr);
  const CClass fourth("test::Fourth", "test::Third", nullptr, nullptr, 1, nullptr);
  second.reset();
  EXPECT_EQ(fourth.GetParent(), &third) << "a newer record stays";
  EXPECT_EQ(third.GetParent(), nullptr);
  EXPECT_EQ(child.GetParent(), first.get());
  first.reset();
  EXPECT_EQ(child.GetParent(), nullptr);
  EXPECT_STREQ(CException::m_classCException.GetParent()->GetName(), "mirel::base::CObject");
}

TEST(ClassTest, NamesAreComparedByTheirTextAndWhole) {
  const std::string parentName = std::string("mirel::base::") + "CObject";
  const CClass child("test::Child", parentName.c_str(), nullptr, nullptr, 1, nullptr);
  const CClass other("test::Child", "mirel::base::CObj", nullptr, nullptr, 1, nullptr);
  EXPECT_EQ(child.GetParent(), &CObject::m_classCObject);
  EXPECT_EQ(other.GetParent(), nullptr);
}

TEST(ClassTest, TheFoundationsRecordsHaveTheirRegisteredNames) {
  static const struct {
    const CClass* record;
    const char* name;
    const char* parentName;
    std::size_t size;
  } rows[] = {
      {&CObject::m_classCObject, "mirel::base::CObject", "mirel::base::CBase", sizeof(CObject)},
      {&CException::m_classCException, "mirel::base::CException", "mirel::base::CObject", sizeof(CException)},
      {&CIllegalArgumentException::m_classCIllegalArgumentException, "mirel::base::CIllegalArgumentException",
       "mirel::base::CException", sizeof(CIllegalArgumentException)},
      {&CMemoryException::m_classCMemoryException, "mirel::base::CMemoryException", "mirel::base::CException",
       sizeof(CMemoryException)},
      {&CNullReferenceException::m_classCNullReferenceException, "mirel::base::CNullReferenceException",
       "mirel::base::CException", sizeof(CNullReferenceException)},
      {&CWinSystemErrorException::m_classCWinSystemErrorException, "mirel::base::win::CWinSystemErrorException",
       "mirel::base::CException", sizeof(CWinSystemErrorException)},
      {&CNoSuchElementException::m_classCNoSuchElementException, "mirel::util::CNoSuchElementException",
       "mirel::base::CException", sizeof(CNoSuchElementException)},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_STREQ(row.record->GetName(), row.name);
    EXPECT_STREQ(row.record->GetParentName(), row.parentName);
    EXPECT_EQ(row.record->GetInstanceSize(), row.size);
  }
}

TEST(ClassTest, ParentsAreFoundAcrossLibraries) {
  const CClass child("test::Child", "plugin::CPluginException", nullptr, nullptr, 1, nullptr);
  EXPECT_EQ(child.GetParent(), &plugin::CPluginException::m_classCPluginException);
  EXPECT_EQ(child.GetParent()->GetParent(), &CException::m_classCException);
  EXPECT_EQ(child.GetParent()->GetParent()->GetParent(), &CObject::m_classCObject);
  EXPECT_EQ(CObject::m_classCObject.GetParent(), nullptr);
}

}  // namespace
}  // namespace tests
