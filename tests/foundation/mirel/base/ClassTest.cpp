#include <gtest/gtest.h>
#include <mirel/base/IllegalArgumentException.h>
#include <mirel/base/MemoryException.h>
#include <mirel/base/NullReferenceException.h>
#include <mirel/base/win/WinSystemErrorException.h>
#include <mirel/util/NoSuchElementException.h>

#include <memory>
#include <new>
#include <optional>
#include <string>

#include "foundation/MemoryFailures.h"
#include "foundation/plugin/Plugin.h"

namespace tests {
namespace {

using namespace mirel::base;
using mirel::base::win::CWinSystemErrorException;
using mirel::util::CNoSuchElementException;

// An object of the class that the test chooses.
class Thing : public CObject {
 public:
  explicit Thing(const CClass* type) : m_type(type) {}
  const CClass* GetClass() const override { return m_type; }

 private:
  const CClass* m_type;
};

class PlainObject : public CObject {};

TEST(ClassTest, ARecordGivesWhatItWasMadeWith) {
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

TEST(ObjectTest, AnObjectIsAnInstanceOfItsClassAndOfItsRegisteredParents) {
  const plugin::CPluginException exception("file", 1, nullptr);
  EXPECT_TRUE(exception.IsInstanceOf(&plugin::CPluginException::m_classCPluginException));
  EXPECT_TRUE(exception.IsInstanceOf(&CException::m_classCException));
  EXPECT_TRUE(exception.IsInstanceOf(&CObject::m_classCObject));
  EXPECT_FALSE(exception.IsInstanceOf(&CMemoryException::m_classCMemoryException));
  EXPECT_FALSE(exception.IsInstanceOf(nullptr));
}

TEST(ObjectTest, TheRegisteredParentCountsAndNotTheCppBase) {
  const CClass beside("test::Beside", "mirel::base::CBase", nullptr, nullptr, 1, nullptr);
  const CClass strange("test::Strange", "mirel::base::CMemoryException", nullptr, nullptr, 1, nullptr);
  EXPECT_FALSE(Thing(&beside).IsInstanceOf(&CObject::m_classCObject));
  EXPECT_TRUE(Thing(&strange).IsInstanceOf(&CMemoryException::m_classCMemoryException));
}

TEST(ObjectTest, AnObjectWithoutARecordOfItsOwnHasTheRootsClass) {
  const PlainObject object;
  EXPECT_EQ(object.GetClass(), &CObject::m_classCObject);
  EXPECT_TRUE(object.IsInstanceOf(&CObject::m_classCObject));
}

TEST(ObjectTest, ByDefaultAnObjectEqualsItselfOnlyAndHasNoClone) {
  const PlainObject objects[2];
  EXPECT_TRUE(objects[0].Equals(&objects[0]));
  EXPECT_FALSE(objects[0].Equals(&objects[1]));
  EXPECT_FALSE(objects[0].Equals(nullptr));
  EXPECT_EQ(objects[0].Clone(), nullptr);
}

TEST(ObjectTest, TheHashIsThatOfTheAddress) {
  alignas(16) static unsigned char places[2][32];
  const PlainObject* const first = ::new (places[0]) PlainObject;
  const PlainObject* const second = ::new (places[1]) PlainObject;
  EXPECT_EQ(first->GetHashCode(), first->GetHashCode());
  EXPECT_NE(first->GetHashCode(), second->GetHashCode());
}

TEST(BaseTest, ObjectsLiveInBlocksOfTheRootAllocator) {
  Allocations allocations;
  CBase* const base = new CBase;
  CObject* const object = new PlainObject;
  EXPECT_EQ(allocations.Live(), 2u);
  delete object;
  delete base;
  EXPECT_EQ(allocations.Live(), 0u);
}

TEST(BaseTest, WhatAnotherLibraryMadeCanBeDeletedHere) {
  Allocations allocations;
  CObject* const object = new plugin::CPluginException("file", 1, nullptr);
  EXPECT_EQ(allocations.Live(), 1u);
  delete object;
  EXPECT_EQ(allocations.Live(), 0u);
}

TEST(BaseTest, ExhaustionThrowsMemoryExceptionWithoutAMessageInEveryLibrary) {
  EXPECT_EQ(FailEachAllocationOf(
                "mirel/base/Base", [] { delete new PlainObject; }, [] {}),
            1);
  Allocations allocations;
  allocations.Fail(1);
  EXPECT_TRUE(plugin::CatchesMemoryExceptionOfFoundation());
  EXPECT_FALSE(plugin::CatchesMemoryExceptionOfFoundation());
}

TEST(BaseTest, ConstructionInPlaceTakesNoBlock) {
  Allocations allocations;
  alignas(PlainObject) unsigned char place[sizeof(PlainObject)];
  PlainObject* const object = new (place) PlainObject;
  EXPECT_EQ(static_cast<void*>(object), static_cast<void*>(place));
  EXPECT_EQ(allocations.Made(), 0);
  object->~PlainObject();
}

TEST(BaseTest, AMemoryExceptionIsThrownForThePlaceGiven) {
  EXPECT_EQ(FailureOf([] { CBase::_ThrowMemoryException("mirel/util/Vector", 925); }),
            Throws<CMemoryException>("mirel/util/Vector", 925, nullptr));
}

}  // namespace
}  // namespace tests
