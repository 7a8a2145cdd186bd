#include <gtest/gtest.h>
#include <mirel/base/MemoryException.h>
#include <mirel/base/Object.h>

#include <new>

#include "foundation/plugin/Plugin.h"

namespace tests {
namespace {

using namespace mirel::base;

// An object of the class that the test chooses.
class Thing : public CObject {
 public:
  explicit Thing(const CClass* type) : m_type(type) {}
  const CClass* GetClass() const override { return m_type; }

 private:
  const CClass* m_type;
};

class PlainObject : public CObject {};

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

TEST(ObjectTest, AnObjectWithoutItsOwnRecordHasTheRootsClass) {
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

}  // namespace
}  // namespace tests
